// Work on rows split among threads.
#pragma once

#include <algorithm>
#include <cstddef>
#if !defined(_WIN32) && !defined(__wasm__)
#include <exception>
#include <thread>
#include <vector>
#endif

namespace kestran {

/// Calls work(begin, end) for parts that make up 0 to `rows`, on at most `threads` threads of which this is
/// one (on Windows and in
/// WebAssembly the only one). `work` must not throw.
template <class Work>
void in_parts(std::size_t rows, int threads, const Work& work) {
#if defined(_WIN32) || defined(__wasm__)
  static_cast<void>(threads);
  work(std::size_t{0}, rows);
#else
  const std::size_t parts =
      std::min(static_cast<std::size_t>(std::max(threads, 1)), std::max<std::size_t>(rows, 1));
  const auto begin_of = [&](std::size_t part) { return rows / parts * part + std::min(part, rows % parts); };
  std::vector<std::thread> helpers;
  std::size_t part = 1;
  try {
    helpers.reserve(parts);
    for (; part < parts; ++part)
      helpers.emplace_back([&work, begin = begin_of(part), end = begin_of(part + 1)] { work(begin, end); });
  } catch (const std::exception&) {
    // No more threads, or no memory for them, are to be had: this one does what is left.
  }
  work(std::size_t{0}, begin_of(1));
  if (part < parts) work(begin_of(part), rows);
  for (std::thread& helper : helpers) helper.join();
#endif
}

}  // namespace kestran
