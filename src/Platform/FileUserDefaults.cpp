#include "Platform/FileUserDefaults.h"

#include "Platform/DebugLog.h"
#include "Platform/Platform.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <deque>
#include <system_error>
#include <utility>

namespace platform {

namespace {

// The settings of the most diligent user have some hundred kilobytes.
/// What a file that an earlier version let grow beyond its size still takes.
constexpr std::size_t smallGrowth = std::size_t{64} << 10U;
constexpr std::chrono::seconds lastPatience(1);

double secondsSince1970() {
  if (const auto* platform = Platform::installed()) return platform->now();
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

std::string timeStamp() {
  const auto seconds = static_cast<std::time_t>(secondsSince1970());
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  char text[32];
  return std::string(text, std::strftime(text, sizeof text, "%Y%m%dT%H%M%SZ", &parts));
}

/// The path without its links, the one at its end and such as lead to nothing yet included.
std::filesystem::path resolved(const std::filesystem::path& path) {
  constexpr int mostLinks = 40;
  std::error_code error;
  auto whole = std::filesystem::absolute(path, error);
  if (error) return path;
  auto result = whole.root_path();
  whole = whole.relative_path();
  std::deque<std::filesystem::path> rest(whole.begin(), whole.end());
  for (int links = 0; !rest.empty();) {
    const auto part = rest.front();
    rest.pop_front();
    if (part.empty() || part == ".") continue;
    if (part == "..") {
      result = result.parent_path();
      continue;
    }
    const auto target = std::filesystem::read_symlink(result / part, error);
    if (error) {
      result /= part;
      continue;
    }
    if (++links > mostLinks) return path;
    if (target.is_absolute()) result = target.root_path();
    const auto way = target.relative_path();
    rest.insert(rest.begin(), way.begin(), way.end());
  }
  return result;
}

std::filesystem::path lockBeside(const std::filesystem::path& path) {
  return path.parent_path() / ("." + path.filename().string() + ".lock");
}

}  // namespace

/// One operation: exclusive, and with its log lines written after it.
class FileUserDefaults::Session {
 public:
  explicit Session(const FileUserDefaults& defaults) : defaults_(defaults), lock_(defaults.mutex_) {}
  ~Session() {
    const auto notes = std::exchange(defaults_.notes_, {});
    lock_.unlock();
    for (const auto& note : notes) debugLog(note);
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

 private:
  const FileUserDefaults& defaults_;
  std::unique_lock<std::mutex> lock_;
};

FileUserDefaults::FileUserDefaults(const std::filesystem::path& path, std::size_t largest)
    : path_(resolved(path)),
      largest_(largest),
      lock_(lockBeside(path_), [this](PatientLock::Answer lock) { lockArrived(std::move(lock)); }) {
  const Session session(*this);
  load();
  if (state_ != FileState::corrupt) return;
  auto lock = lock_.take();
  if (lock) refreshByName();
  if (state_ == FileState::corrupt) setAside();
}

FileUserDefaults::~FileUserDefaults() { awaitLock(); }

void FileUserDefaults::awaitLock() {
  std::unique_lock lock(mutex_);
  lockCame_.wait_for(lock, lastPatience, [this] { return unwritten_.empty() || !lock_.isWaiting(); });
}

void FileUserDefaults::setObject(PropertyListValue value, std::string_view key) {
  const Session session(*this);
  change(storable(std::move(value)), key);
}

void FileUserDefaults::removeObjectForKey(std::string_view key) {
  const Session session(*this);
  change(std::nullopt, key);
}

void FileUserDefaults::holdBack() {
  const Session session(*this);
  ++holders_;
}

void FileUserDefaults::storeHeldBack() {
  const Session session(*this);
  if (--holders_ == 0 && !unwritten_.empty()) write();
}

void FileUserDefaults::storeWhatIsHeldBack() {
  {
    const Session session(*this);
    if (!unwritten_.empty()) write();
  }
  // The program ends without destructors.
  awaitLock();
}

std::optional<PropertyListValue> FileUserDefaults::storedValue(std::string_view key) const {
  const Session session(*this);
  refresh();
  if (const auto entry = unwritten_.find(key); entry != unwritten_.end()) return entry->second;
  const auto entry = onDisk_.find(key);
  return entry != onDisk_.end() ? std::optional(entry->second) : std::nullopt;
}

void FileUserDefaults::change(std::optional<PropertyListValue> value, std::string_view key) {
  refreshByName();
  const auto entry = onDisk_.find(key);
  const bool isOnDisk = entry != onDisk_.end() ? value == entry->second : !value;
  const bool isFileGood = state_ == FileState::good || state_ == FileState::absent;
  if (isOnDisk && isFileGood && unwritten_.empty()) return;
  if (value && !canHold(*value, key)) return;
  unwritten_.insert_or_assign(std::string(key), std::move(value));
  if (holders_ == 0) write();
}

bool FileUserDefaults::canHold(const PropertyListValue& value, std::string_view key) const {
  PropertyListExtent others;
  const auto add = [](PropertyListExtent& sum, const PropertyListExtent& part) {
    sum.bytes += part.bytes;
    sum.containers += part.containers;
  };
  PropertyListExtent before;
  for (const auto& [name, stored] : onDisk_) {
    if (unwritten_.contains(name)) continue;
    add(name == key ? before : others, extentOf(name, stored));
  }
  for (const auto& [name, set] : unwritten_) {
    if (set) add(name == key ? before : others, extentOf(name, *set));
  }
  const auto part = extentOf(key, value);
  const auto total = others.bytes + part.bytes;
  const bool isGrowing = part.bytes > before.bytes;
  const bool wasTooLarge = others.bytes + before.bytes > largest_;
  const bool fits = total <= largest_ || !isGrowing ||
                    (wasTooLarge && part.bytes - before.bytes <= smallGrowth && total < mostReadable());
  // The file's own dictionary is one too.
  const bool isReadable =
      part.depth < deepestPropertyList && others.containers + part.containers < mostPropertyListContainers;
  if (fits && isReadable) return true;
  note("change()", "A value of " + std::to_string(part.bytes) + " bytes for " + std::string(key) +
                       (isReadable ? " is not stored: the settings would be too large"
                                   : " is not stored: it could not be read again"));
  return false;
}

void FileUserDefaults::fail(std::string_view why) const {
  note("write()", std::string("The settings are kept in memory only: ").append(why));
}

void FileUserDefaults::write() {
  makePrivateFolder(path_.parent_path());
  const auto lock = lock_.take();
  if (!lock) return fail(lock.error().why);
  writeLocked();
}

void FileUserDefaults::lockArrived(PatientLock::Answer lock) {
  const Session session(*this);
  lock_.arrived();
  // Whoever waits goes on when this session ends.
  lockCame_.notify_all();
  if (!lock) return fail(lock.error().why);
  if (unwritten_.empty() || holders_ > 0) return;
  note("lockArrived(_:)", "The lock of the settings file is free");
  writeLocked();
}

void FileUserDefaults::writeLocked() {
  // Another process may have written while this one waited.
  refreshByName();
  if (state_ == FileState::unreadable) return fail(whyUnreadable_);
  if (state_ == FileState::corrupt && !setAside()) return fail("the file is damaged and can't be set aside");
  auto content = merged();
  if (content == onDisk_ && state_ == FileState::good) return unwritten_.clear();
  const auto text = writeXMLPropertyList(content);
  if (!text) return fail("they have no form as a property list");
  if (text->size() > mostReadable()) return fail("they are too large to be read again");
  auto replaced = replaceFile(path_, *text);
  if (!replaced) return fail(replaced.error().why);
  onDisk_ = std::move(content);
  loaded_ = replaced->identity;
  loadedFile_ = std::move(replaced->file);
  state_ = FileState::good;
  unwritten_.clear();
}

void FileUserDefaults::refresh() const {
  // A file that loses its name to another one shows that itself.
  if (loadedFile_.isOpen() && identityOf(loadedFile_) == loaded_) return;
  refreshByName();
}

void FileUserDefaults::refreshByName() const {
  if (identityOf(path_) == loaded_) return;
  load();
  if (state_ == FileState::corrupt) {
    note("refreshByName()", "The settings file " + path_.string() + " is no property list any more");
  }
}

void FileUserDefaults::load() const {
  auto contents = readWholeFile(path_, mostReadable());
  if (!contents) {
    loaded_ = identityOf(path_);
    loadedFile_ = FileDescriptor();
    if (contents.error().code == ENOENT) {
      state_ = FileState::absent;
      onDisk_.clear();
      return;
    }
    state_ = FileState::unreadable;
    whyUnreadable_ = "the file can't be used, " + contents.error().why;
    return note("load()", "The settings file " + path_.string() + " can't be used, " + contents.error().why);
  }
  loaded_ = contents->identity;
  loadedFile_ = std::move(contents->file);
  const auto list = readPropertyList(contents->bytes);
  const auto* dictionary = list ? list->as<PropertyListValue::Dictionary>() : nullptr;
  if (dictionary == nullptr) {
    // Someone may be at work on it with an editor: what was read before holds until it must be written.
    state_ = FileState::corrupt;
    return;
  }
  state_ = FileState::good;
  onDisk_ = *dictionary;
}

bool FileUserDefaults::setAside() {
  auto aside = path_;
  aside += ".corrupt-" + timeStamp();
  for (int i = 2; identityOf(aside).error != ENOENT && i < 100; ++i) {
    aside = path_;
    aside += ".corrupt-" + timeStamp() + "-" + std::to_string(i);
  }
  if (std::rename(path_.c_str(), aside.c_str()) != 0) {
    note("setAside()", std::string("The damaged settings file can't be renamed: ") + std::strerror(errno));
    return false;
  }
  note("setAside()", "The settings file is no property list. It is kept as " + aside.string());
  state_ = FileState::absent;
  loaded_ = identityOf(path_);
  loadedFile_ = FileDescriptor();
  return true;
}

PropertyListValue::Dictionary FileUserDefaults::merged() const {
  auto result = onDisk_;
  for (const auto& [key, value] : unwritten_) {
    if (value) {
      result.insert_or_assign(key, *value);
    } else {
      result.erase(key);
    }
  }
  return result;
}

void FileUserDefaults::note(std::string_view function, std::string_view message) const {
  std::string line = "Q$: FileUserDefaults.cpp.";
  notes_.push_back(line.append(function).append(" ").append(message));
}

}  // namespace platform
