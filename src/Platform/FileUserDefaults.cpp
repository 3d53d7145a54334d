#include "Platform/FileUserDefaults.h"

#include "Platform/DebugLog.h"
#include "Platform/Platform.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <system_error>
#include <utility>

namespace platform {

namespace {

// The settings of the most diligent user have some hundred kilobytes.
constexpr std::size_t sizeLimit = std::size_t{64} << 20U;

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

std::filesystem::path resolved(const std::filesystem::path& path) {
  std::error_code error;
  const auto absolute = std::filesystem::absolute(path, error);
  auto result = std::filesystem::weakly_canonical(error ? path : absolute, error);
  return error ? path : result;
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

FileUserDefaults::FileUserDefaults(const std::filesystem::path& path)
    : path_(resolved(path)), lockPath_(path_.parent_path() / ("." + path_.filename().string() + ".lock")) {
  const Session session(*this);
  load();
  if (state_ != FileState::corrupt) return;
  auto lock = FileLock::take(lockPath_);
  if (lock) refreshByName();
  if (state_ == FileState::corrupt) setAside();
}

FileUserDefaults::~FileUserDefaults() = default;

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
  unwritten_.insert_or_assign(std::string(key), std::move(value));
  if (holders_ == 0) write();
}

void FileUserDefaults::write() {
  constexpr std::string_view prefix = "The settings are kept in memory only: ";
  const auto fail = [&](std::string_view why) { note("write()", std::string(prefix).append(why)); };
  makePrivateFolder(path_.parent_path());
  const auto lock = FileLock::take(lockPath_);
  if (!lock) return fail(lock.error().why);
  // Another process may have written while this one waited.
  refreshByName();
  if (state_ == FileState::unreadable) return fail(whyUnreadable_);
  if (state_ == FileState::corrupt && !setAside()) return fail("the file is damaged and can't be set aside");
  auto content = merged();
  if (content == onDisk_ && state_ == FileState::good) return unwritten_.clear();
  const auto text = writeXMLPropertyList(content);
  if (!text) return fail("they have no form as a property list");
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
  auto contents = readWholeFile(path_, sizeLimit);
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
