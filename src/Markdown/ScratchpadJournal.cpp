#include "Markdown/ScratchpadJournal.h"

#include "Platform/DispatchQueue.h"
#include "Platform/Platform.h"
#include "Platform/SignalBlock.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <limits>
#include <set>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velkin {

using platform::FileDescriptor;

namespace {

constexpr std::string_view magic = "velkin-scratchpad 1\n";
constexpr std::string_view suffix = ".text";
constexpr std::string_view unfinishedSuffix = ".new";
/// Reading a text means to make all its changes again, so a file begins anew after so many.
constexpr std::size_t mostRecords = 2048;
constexpr std::size_t mostBytes = std::size_t{64} << 20;
/// What was as long as that and is gone by half and more isn't edited but replaced.
constexpr std::size_t shortestReplaced = 40;

/// A change: at which byte, how many bytes go, how many come, what tells it from noise; then the bytes.
constexpr std::size_t headSize = 16;

void put(std::string& record, std::uint32_t number) {
  for (int shift = 0; shift < 32; shift += 8) record += static_cast<char>((number >> shift) & 0xFFU);
}

std::uint32_t numberAt(std::string_view bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    number |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + i])) << (8 * i);
  }
  return number;
}

std::uint32_t checksum(std::uint32_t position, std::uint32_t removed, std::string_view inserted) {
  std::uint32_t sum = 2166136261U;
  const auto add = [&](std::uint32_t value) { sum = (sum ^ value) * 16777619U; };
  add(position);
  add(removed);
  add(static_cast<std::uint32_t>(inserted.size()));
  for (const char byte : inserted) add(static_cast<unsigned char>(byte));
  return sum;
}

struct Change {
  std::size_t position = 0;
  std::size_t removed = 0;
  std::string_view inserted;
};

Change changeBetween(std::string_view before, std::string_view now) {
  const auto most = std::min(before.size(), now.size());
  const auto same = static_cast<std::size_t>(
      std::mismatch(before.begin(), before.begin() + static_cast<std::ptrdiff_t>(most), now.begin()).first -
      before.begin());
  const auto mostAtEnd = static_cast<std::ptrdiff_t>(most - same);
  const auto sameAtEnd = static_cast<std::size_t>(
      std::mismatch(before.rbegin(), before.rbegin() + mostAtEnd, now.rbegin()).first - before.rbegin());
  return {same, before.size() - same - sameAtEnd, now.substr(same, now.size() - same - sameAtEnd)};
}

std::string recordOf(const Change& change) {
  const auto position = static_cast<std::uint32_t>(change.position);
  const auto removed = static_cast<std::uint32_t>(change.removed);
  std::string record;
  record.reserve(headSize + change.inserted.size());
  put(record, position);
  put(record, removed);
  put(record, static_cast<std::uint32_t>(change.inserted.size()));
  put(record, checksum(position, removed, change.inserted));
  return record.append(change.inserted);
}

/// The text that the changes lead to, as far as they are whole.
std::optional<std::string> textOf(std::string_view bytes) {
  if (!bytes.starts_with(magic)) return std::nullopt;
  bytes.remove_prefix(magic.size());
  std::optional<std::string> text;
  while (bytes.size() >= headSize) {
    const auto position = numberAt(bytes, 0);
    const auto removed = numberAt(bytes, 4);
    const auto length = numberAt(bytes, 8);
    if (bytes.size() - headSize < length) break;
    const auto inserted = bytes.substr(headSize, length);
    const auto size = text ? text->size() : 0;
    const bool fits = position <= size && removed <= size - position;
    if (!fits || checksum(position, removed, inserted) != numberAt(bytes, 12)) break;
    if (!text) text.emplace();
    text->replace(position, removed, inserted);
    bytes.remove_prefix(headSize + length);
  }
  return text;
}

std::optional<ScratchpadJournal::Entry> read(const std::filesystem::path& file) {
  const auto contents = platform::readWholeFile(file, mostBytes);
  if (!contents) return std::nullopt;
  auto text = textOf(contents->bytes);
  if (!text || text->empty()) return std::nullopt;
  struct stat status {};
  const bool isKnown = fstat(contents->file.number(), &status) == 0;
  return ScratchpadJournal::Entry{file, isKnown ? static_cast<double>(status.st_mtime) : 0, std::move(*text)};
}

bool writeAll(int file, std::string_view bytes) {
  // A size limit of the process is a full disk, too.
  const platform::SignalBlock block(SIGXFSZ);
  while (!bytes.empty()) {
    const auto written = write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

FileDescriptor created(const std::filesystem::path& path) {
  constexpr mode_t ownersOnly = 0600;
  return FileDescriptor(
      open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_NOFOLLOW | O_CLOEXEC, ownersOnly));
}

/// Names sort as the times at which their texts were begun.
std::string nameFor(double time, int attempt) {
  std::array<char, 48> name{};
  std::snprintf(name.data(), name.size(), "%016lld-%02d", static_cast<long long>(time * 1000), attempt);
  return name.data();
}

}  // namespace

ScratchpadJournal ScratchpadJournal::ofUser() {
  const auto data = platform::Platform::current().userDataFolder();
  return ScratchpadJournal(data.empty() ? data : data / "scratchpad");
}

std::vector<std::filesystem::path> ScratchpadJournal::files() const {
  std::vector<std::filesystem::path> found;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder_, error), end; !error && entry != end;
       entry.increment(error)) {
    if (entry->path().extension() == suffix) found.push_back(entry->path());
  }
  std::ranges::sort(found, std::greater());
  return found;
}

std::vector<ScratchpadJournal::Entry> ScratchpadJournal::entries() const {
  std::vector<Entry> all;
  std::set<std::string> texts;
  if (folder_.empty()) return all;
  for (const auto& file : files()) {
    auto entry = read(file);
    if (entry && texts.insert(entry->text).second) all.push_back(std::move(*entry));
    if (all.size() == mostTexts) break;
  }
  return all;
}

std::optional<ScratchpadJournal::Entry> ScratchpadJournal::latest() const {
  if (folder_.empty()) return std::nullopt;
  for (const auto& file : files()) {
    if (auto entry = read(file)) return entry;
  }
  return std::nullopt;
}

bool ScratchpadJournalWriter::changed(std::string_view before, std::string_view now) {
  if (journal_.folder().empty() || before == now) return true;
  const auto change = changeBetween(before, now);
  const bool isReplaced = before.size() >= shortestReplaced && change.removed * 2 >= before.size();
  if (isReplaced) endEntry();
  if (!file_.isOpen()) return begin(now);
  if (isBehind_ || records_ >= mostRecords) return rewrite(now);
  return append(recordOf(change));
}

void ScratchpadJournalWriter::endEntry() {
  file_ = {};
  path_.clear();
  isBehind_ = false;
}

bool ScratchpadJournalWriter::begin(std::string_view text) {
  constexpr int mostAttempts = 100;
  platform::makePrivateFolder(journal_.folder());
  std::error_code ignored;
  std::filesystem::permissions(journal_.folder(), std::filesystem::perms::owner_all, ignored);
  const auto now = platform::now();
  for (int attempt = 0; attempt < mostAttempts; ++attempt) {
    const auto path = journal_.folder() / (nameFor(now, attempt) + std::string(suffix));
    std::error_code error;
    if (std::filesystem::exists(path, error)) continue;
    path_ = path;
    if (!rewrite(text)) {
      endEntry();
      return false;
    }
    prune();
    return true;
  }
  return false;
}

bool ScratchpadJournalWriter::rewrite(std::string_view text) {
  // The name stands for the old file or for the whole new one, whenever the process dies.
  auto unfinished = path_;
  unfinished += unfinishedSuffix;
  unlink(unfinished.c_str());
  auto file = created(unfinished);
  const auto bytes = std::string(magic) + recordOf({0, 0, text});
  if (!file.isOpen() || !writeAll(file.number(), bytes) || rename(unfinished.c_str(), path_.c_str()) != 0) {
    unlink(unfinished.c_str());
    isBehind_ = true;
    return false;
  }
  file_ = std::move(file);
  size_ = bytes.size();
  records_ = 1;
  isBehind_ = false;
  return true;
}

bool ScratchpadJournalWriter::append(std::string_view record) {
  if (writeAll(file_.number(), record)) {
    size_ += record.size();
    ++records_;
    return true;
  }
  // Half a record hides nothing: what comes next is the whole text, in a new file. Taking it back only frees
  // its room.
  isBehind_ = true;
  [[maybe_unused]] const int result = ftruncate(file_.number(), static_cast<off_t>(size_));
  return false;
}

void ScratchpadJournalWriter::prune() const {
  const auto files = journal_.files();
  std::error_code ignored;
  for (std::size_t i = ScratchpadJournal::mostTexts; i < files.size(); ++i) {
    std::filesystem::remove(files[i], ignored);
  }
}

}  // namespace velkin
