#pragma once

#include "Platform/WholeFile.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

/// Lines for standard error that never wait for who reads them. A line that can't be written at once is
/// dropped, and the next one that can is preceded by the number of those that were. Its users keep each other
/// apart.
class StandardError {
 public:
  /// Longer lines would not go into a pipe in one piece. Bytes, the line's end not counted.
  static constexpr std::size_t longestLine = 4000;

  /// The debug log's.
  static StandardError& shared();

  /// Writes to `file` from here on, which stays open: for who puts something else in standard error's place.
  void moveTo(int file) noexcept { file_ = file; }

  /// `line` has no line break and at the most `longestLine` bytes; what is beyond is left out.
  void writeLine(std::string_view line);

 private:
  /// How many bytes went out; nothing is waited for.
  std::size_t write(std::string_view text);
  /// A way to the same file that gives up where the standard one would wait; -1 if there is none.
  int withoutWaiting();
  /// Where a text can be written at once; -1 where that would have to be waited for.
  int writable(bool isOrdinaryFile);

  int file_ = 2;
  /// The end of a line of which the beginning went out.
  std::string rest_;
  std::size_t dropped_ = 0;
  FileDescriptor own_;
  /// Of what standard error was when `own_` was opened.
  dev_t device_ = 0;
  ino_t number_ = 0;
};

}  // namespace platform
