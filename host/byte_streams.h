// Bytes in and bytes out, block by block, and work split among threads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>

namespace kestran {

bool is_terminal(std::FILE* stream);

/// A file, or standard input where its name is empty.
class ByteSource {
 public:
  explicit ByteSource(const std::string& path);
  ~ByteSource();
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;

  /// Appends what is there, at least one and at most `most` bytes; false at the end.
  bool append_to(std::string& text, std::size_t most);
  /// How many bytes are to come; 0 when that is not known.
  std::uintmax_t size() const;
  bool failed() const { return error != 0; }
  std::string reason() const;

 private:
  int descriptor;
  bool owned;
  int error = 0;
};

/// A file, or standard output where its name is empty. The file appears under its name when finish() has
/// succeeded; before, and when that never happens, an older one of that name stays.
class ByteSink {
 public:
  explicit ByteSink(const std::string& path);
  ~ByteSink();
  ByteSink(const ByteSink&) = delete;
  ByteSink& operator=(const ByteSink&) = delete;

  bool write(std::string_view bytes);
  bool finish();
  bool failed() const { return error != 0; }
  std::string reason() const;

 private:
  std::string final_path, partial_path;  // empty where there is nothing to rename
  int descriptor;
  bool owned = false;
  bool nameless = false;  // until it is finished
  int error = 0;
};

/// Does work(0) .. work(count - 1), each on a thread of its own where there are any to be had. Lack of memory
/// in one of them is thrown once all are done.
void for_each_in_parallel(std::size_t count, const std::function<void(std::size_t)>& work);

}  // namespace kestran
