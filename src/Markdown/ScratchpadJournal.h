#pragma once

#include "Platform/WholeFile.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velkin {

/// The texts that were written in scratchpads, on disk from the moment of each key: a file for each text, to
/// which every change is appended. What a process that died had in its hands is whole up to its last change.
/// Main thread.
class ScratchpadJournal {
 public:
  /// A text of the journal.
  struct Entry {
    std::filesystem::path file;
    /// Of its last change, in seconds since 1970.
    double time = 0;
    std::string text;
    bool operator==(const Entry&) const = default;
  };

  static constexpr std::size_t mostTexts = 50;

  /// `folder` is made at the first writing. An empty one keeps nothing.
  explicit ScratchpadJournal(std::filesystem::path folder) : folder_(std::move(folder)) {}
  /// In the user's data folder.
  static ScratchpadJournal ofUser();

  /// The newest first, and no text twice. A file that is no text of the journal's is passed over; of a damaged
  /// one the text is taken up to where the damage begins.
  std::vector<Entry> entries() const;
  /// The newest one.
  std::optional<Entry> latest() const;

  const std::filesystem::path& folder() const noexcept { return folder_; }

 private:
  std::vector<std::filesystem::path> files() const;
  friend class ScratchpadJournalWriter;

  std::filesystem::path folder_;
};

/// Keeps what is written in one scratchpad. Main thread.
class ScratchpadJournalWriter {
 public:
  explicit ScratchpadJournalWriter(ScratchpadJournal journal) : journal_(std::move(journal)) {}

  /// The text was `before` and is `now`. A change that takes most of a text away begins a new entry, and the
  /// text as it was stays. False if it couldn't be written: then the whole text is tried again at the next
  /// change.
  bool changed(std::string_view before, std::string_view now);
  /// What is written from here on belongs to another entry.
  void endEntry();

 private:
  bool begin(std::string_view text);
  /// A new file with all of the text in it, in the place of the present one.
  bool rewrite(std::string_view text);
  bool append(std::string_view record);
  void prune() const;

  ScratchpadJournal journal_;
  std::filesystem::path path_;
  platform::FileDescriptor file_;
  /// How many of its bytes are whole records.
  std::uint64_t size_ = 0;
  std::size_t records_ = 0;
  /// The file lacks a change.
  bool isBehind_ = false;
};

}  // namespace velkin
