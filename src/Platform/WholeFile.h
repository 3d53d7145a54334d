#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <sys/types.h>
#include <tl/expected.hpp>

namespace platform {

/// Owns an open file.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int number) noexcept : number_(number) {}
  FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept;
  ~FileDescriptor();

  int number() const noexcept { return number_; }
  bool isOpen() const noexcept { return number_ >= 0; }

 private:
  int number_ = -1;
};

/// Which file stands under a name, and in which state. Two are equal if nothing was written in between. The
/// number of a removed file may be given to a new one: who compares later keeps the file open meanwhile.
struct FileIdentity {
  dev_t device = 0;
  ino_t number = 0;
  off_t size = 0;
  /// How many names the file has; an open one whose name was given to another file has none.
  nlink_t names = 0;
  std::int64_t modified = 0;
  std::int64_t changed = 0;
  /// The error of looking, with nothing else filled in then; ENOENT if there is no file.
  int error = 0;

  bool operator==(const FileIdentity&) const = default;
};

FileIdentity identityOf(const std::filesystem::path& path) noexcept;

/// The same of an open file, in a third of the time: no name is looked up.
FileIdentity identityOf(const FileDescriptor& file) noexcept;

/// A failed system call: its number, and in words what failed.
struct FileError {
  int code = 0;
  std::string why;
};

struct FileContents {
  std::string bytes;
  FileIdentity identity;
  FileDescriptor file;
};

/// Reads a regular file. Anything else under that name is an error and is never waited for.
tl::expected<FileContents, FileError> readWholeFile(const std::filesystem::path& path, std::size_t sizeLimit);

struct ReplacedFile {
  FileIdentity identity;
  FileDescriptor file;
};

/// Puts a file with `bytes`, of `mode` less the umask, in the place of `path`: a new file in the same folder,
/// on disk before it takes the name. Whatever fails and whenever the process dies, the name stands for the
/// old file or the new one, whole. A size limit of the process is an error like a full disk, not a signal.
/// Two at once on the same path must be kept apart by a `FileLock`.
tl::expected<ReplacedFile, FileError> replaceFile(const std::filesystem::path& path, std::string_view bytes,
                                                  mode_t mode = 0600);

/// Keeps other processes, and other threads with a lock of their own, out until its end or the process's.
class FileLock {
 public:
  /// Waits for the lock on the file at `path`, for ever if need be (see PatientLock). The file is made if it
  /// is missing and stays. On a file system that knows no locks the result holds none.
  static tl::expected<FileLock, FileError> take(const std::filesystem::path& path);

  /// The same if nobody holds it, without any waiting; else nothing, and nothing on a file system that may be
  /// another machine's, where the question itself may wait.
  static std::optional<FileLock> takeIfFree(const std::filesystem::path& path);

  FileLock(FileLock&&) noexcept = default;
  FileLock& operator=(FileLock&&) noexcept = default;
  ~FileLock();

 private:
  explicit FileLock(FileDescriptor file) noexcept : file_(std::move(file)) {}

  FileDescriptor file_;
};

/// Makes the folder and those above it that are missing, mode 0700 under any umask. Folders that exist stay
/// as they are.
void makePrivateFolder(const std::filesystem::path& folder) noexcept;

}  // namespace platform
