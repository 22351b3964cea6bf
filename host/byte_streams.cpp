#include "host/byte_streams.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <new>
#include <system_error>

#include "functions/in_parts.h"

namespace kestran {

#if defined(_WIN32)
constexpr int as_it_is = O_BINARY;
#else
constexpr int as_it_is = O_CLOEXEC;
#endif

bool is_terminal(std::FILE* stream) { return isatty(fileno(stream)) != 0; }

ByteSource::ByteSource(const std::string& path)
    : descriptor(path.empty() ? fileno(stdin) : open(path.c_str(), O_RDONLY | as_it_is)),
      owned(!path.empty()) {
  if (descriptor < 0) error = errno;
}

ByteSource::~ByteSource() {
  if (owned && descriptor >= 0) close(descriptor);
}

bool ByteSource::append_to(std::string& text, std::size_t most) {
  const std::size_t before = text.size();
  text.resize(before + most);
  for (;;) {
    const auto count = read(descriptor, text.data() + before, static_cast<unsigned>(most));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) error = errno;
    text.resize(before + (count > 0 ? static_cast<std::size_t>(count) : 0));
    return count > 0;
  }
}

std::uintmax_t ByteSource::size() const {
  struct stat about;
  return fstat(descriptor, &about) == 0 && S_ISREG(about.st_mode) ? static_cast<std::uintmax_t>(about.st_size)
                                                                  : 0;
}

std::string ByteSource::reason() const { return std::strerror(error); }

#if defined(O_TMPFILE)
// A file in the folder of `path` that has no name yet, so that nothing of it is left when the program is
// killed; negative where the file system or the lack of /proc does not allow it.
static int open_nameless(const std::string& path) {
  const std::string folder = path.substr(0, path.rfind('/') + 1);
  if (access("/proc/self/fd", X_OK) != 0) return -1;
  return open(folder.empty() ? "." : folder.c_str(), O_WRONLY | O_TMPFILE | as_it_is, 0666);
}

static bool give_name(int descriptor, const std::string& path) {
  const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
  unlink(path.c_str());
  return linkat(AT_FDCWD, link.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
}
#else
static int open_nameless(const std::string&) { return -1; }
static bool give_name(int, const std::string&) { return false; }
#endif

ByteSink::ByteSink(const std::string& path) : descriptor(fileno(stdout)) {
  if (path.empty()) return;
  owned = true;
  std::error_code unknown;
  // A pipe or a device takes what it gets; a link stays one.
  const bool file =
      !std::filesystem::exists(path, unknown) || std::filesystem::is_regular_file(path, unknown);
  if (file) {
    const std::filesystem::path there = std::filesystem::weakly_canonical(path, unknown);
    final_path = there.empty() ? path : there.string();
    // Of runs that write the same file, each has its own.
    partial_path = final_path + "." + std::to_string(getpid()) + ".partial";
    descriptor = open_nameless(final_path);
    nameless = descriptor >= 0;
    if (nameless) return;
  }
  descriptor = open((file ? partial_path : path).c_str(), O_WRONLY | O_CREAT | O_TRUNC | as_it_is, 0666);
  if (descriptor < 0) error = errno;
}

ByteSink::~ByteSink() {
  if (!owned || descriptor < 0) return;
  close(descriptor);
  if (!partial_path.empty() && !nameless) unlink(partial_path.c_str());
}

bool ByteSink::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::write(descriptor, bytes.data(), static_cast<unsigned>(bytes.size()));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      error = errno;
      return false;
    }
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

bool ByteSink::finish() {
  if (!owned) return true;
  if (nameless && !give_name(descriptor, partial_path)) {
    error = errno;
    return false;
  }
  nameless = false;
  const bool closed = close(descriptor) == 0;
  descriptor = -1;
  if (partial_path.empty()) {
    error = closed ? 0 : errno;
    return closed;
  }
  std::error_code renamed;
  if (closed) std::filesystem::rename(partial_path, final_path, renamed);
  if (closed && !renamed) return true;
  error = closed ? renamed.value() : errno;
  unlink(partial_path.c_str());
  return false;
}

std::string ByteSink::reason() const { return std::strerror(error); }

void for_each_in_parallel(std::size_t count, const std::function<void(std::size_t)>& work) {
  std::atomic<bool> out_of_memory{false};
  in_parts(count, static_cast<int>(count), [&](std::size_t begin, std::size_t end) {
    try {
      for (std::size_t k = begin; k < end; ++k) work(k);
    } catch (const std::bad_alloc&) {
      out_of_memory = true;
    }
  });
  if (out_of_memory) throw std::bad_alloc();
}

}  // namespace kestran
