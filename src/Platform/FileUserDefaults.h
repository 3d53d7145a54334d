#pragma once

#include "Platform/NSUserDefaults.h"
#include "Platform/PatientLock.h"
#include "Platform/WholeFile.h"

#include <condition_variable>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// The settings domain in one property-list file (XML form, mode 0600).
///
/// Every set is on disk when it returns, in one atomic write; setting what is there already writes nothing.
/// Sets within a `Together` are on disk when that ends.
/// What another process changes in the file is seen by the next read, and a write changes only the keys that
/// this process set. Where a folder above the file was renamed, the reads see it from the next set on. A lock
/// file beside it (".NAME.lock") keeps writers apart. Another process that holds it is waited for one second
/// at the most; then the values hold for this process, and are written as soon as it lets go.
///
/// Failures are told to the debug log only. If a write fails, the file stays as it is, the value holds for
/// this process, and the next set writes it too. A set by which the file would grow beyond its largest size
/// is refused, and the value stays what it was: what is written can be read again. A file that can't be read
/// is never overwritten. One that can't be parsed when the program starts or when it has to write is kept
/// beside as "NAME.corrupt-TIME".
class FileUserDefaults : public NSUserDefaults {
 public:
  static constexpr std::size_t largestFile = std::size_t{32} << 20U;

  /// `path`: the file; it and its folder (then 0700) are made at the first set. A symbolic link is followed.
  /// `largest`: the bytes to which it may grow.
  explicit FileUserDefaults(const std::filesystem::path& path, std::size_t largest = largestFile);
  ~FileUserDefaults() override;

  void setObject(PropertyListValue value, std::string_view key) override;
  void removeObjectForKey(std::string_view key) override;
  void storeWhatIsHeldBack() override;

 protected:
  void holdBack() override;
  void storeHeldBack() override;
  std::optional<PropertyListValue> storedValue(std::string_view key) const override;

 private:
  enum class FileState { absent, good, unreadable, corrupt };
  class Session;

  /// What can be read: more than may be written, for a file that an earlier version let grow.
  std::size_t mostReadable() const { return 2 * largest_; }
  void change(std::optional<PropertyListValue> value, std::string_view key);
  /// True if the file can take the value, and be read again.
  bool canHold(const PropertyListValue& value, std::string_view key) const;
  /// Locks the file first, or has that done.
  void write();
  void lockArrived(PatientLock::Answer lock);
  /// At the end: gives a process that holds the lock one more second to let go, if something is left to
  /// write.
  void awaitLock();
  /// With the lock.
  void writeLocked();
  void fail(std::string_view why) const;
  /// Reads the file again if it is no longer as loaded.
  void refresh() const;
  /// The same, and if its name stands for another file by now.
  void refreshByName() const;
  void load() const;
  bool setAside();
  PropertyListValue::Dictionary merged() const;
  void note(std::string_view function, std::string_view message) const;

  std::filesystem::path path_;
  std::size_t largest_;

  /// Guards everything below. Never held while the log is written: who listens there may read a setting.
  mutable std::mutex mutex_;
  mutable FileState state_ = FileState::absent;
  mutable std::string whyUnreadable_;
  /// The file's content as last read or written.
  mutable PropertyListValue::Dictionary onDisk_;
  mutable FileIdentity loaded_;
  /// Open while there is one: its state is looked at for each read.
  mutable FileDescriptor loadedFile_;
  /// What was set here and isn't on disk; an absent value was removed.
  std::map<std::string, std::optional<PropertyListValue>, std::less<>> unwritten_;
  int holders_ = 0;
  std::condition_variable lockCame_;
  mutable std::vector<std::string> notes_;
  /// Its late answers use all of the above.
  PatientLock lock_;
};

}  // namespace platform
