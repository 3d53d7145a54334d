#include "Platform/WholeFile.h"

#include "Platform/SignalBlock.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace platform {

namespace {

FileError errorOf(std::string_view what, int code = errno) {
  return {code, std::string(what).append(": ").append(std::strerror(code))};
}

std::int64_t nanoseconds(const timespec& time) noexcept {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

FileIdentity identityOf(const struct stat& status) noexcept {
  return {status.st_dev,
          status.st_ino,
          status.st_size,
          status.st_nlink,
          nanoseconds(status.st_mtim),
          nanoseconds(status.st_ctim),
          0};
}

/// The usual file systems of a disk or in memory: asking for a lock there never waits.
constexpr std::array<std::uint64_t, 7> localTypes = {
    EXT4_SUPER_MAGIC, 0x58465342 /* xfs */, BTRFS_SUPER_MAGIC,    0xF2F52010 /* f2fs */,
    TMPFS_MAGIC,      0x2FC12FC1 /* zfs */, OVERLAYFS_SUPER_MAGIC};

template <class Call>
auto retried(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

bool writeAll(int file, std::string_view bytes) noexcept {
  // A write beyond the process's size limit fails with EFBIG and doesn't end the process.
  const SignalBlock block(SIGXFSZ);
  while (!bytes.empty()) {
    const auto count = retried([&] { return write(file, bytes.data(), bytes.size()); });
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

std::filesystem::path hiddenBeside(const std::filesystem::path& path, std::string_view ending) {
  return path.parent_path() / ("." + path.filename().string() + std::string(ending));
}

}  // namespace

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
  std::swap(number_, other.number_);
  return *this;
}

FileDescriptor::~FileDescriptor() {
  if (isOpen()) close(number_);
}

FileIdentity identityOf(const std::filesystem::path& path) noexcept {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) return identityOf(status);
  FileIdentity none;
  none.error = errno;
  return none;
}

FileIdentity identityOf(const FileDescriptor& file) noexcept {
  struct stat status {};
  if (fstat(file.number(), &status) == 0) return identityOf(status);
  FileIdentity none;
  none.error = errno;
  return none;
}

tl::expected<FileContents, FileError> readWholeFile(const std::filesystem::path& path,
                                                    std::size_t sizeLimit) {
  // Not blocking: opening a pipe would wait for somebody to write into it.
  FileDescriptor file(
      retried([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); }));
  if (!file.isOpen()) return tl::unexpected(errorOf("it can't be opened"));
  struct stat status {};
  if (fstat(file.number(), &status) != 0) return tl::unexpected(errorOf("it can't be looked at"));
  if (S_ISDIR(status.st_mode)) return tl::unexpected(FileError{EISDIR, "it is a folder"});
  if (!S_ISREG(status.st_mode)) return tl::unexpected(FileError{EINVAL, "it is no regular file"});
  FileContents contents;
  contents.identity = identityOf(status);
  std::string buffer(std::size_t{1} << 16U, '\0');
  for (;;) {
    const auto count = retried([&] { return read(file.number(), buffer.data(), buffer.size()); });
    if (count < 0) return tl::unexpected(errorOf("it can't be read"));
    if (count == 0) break;
    contents.bytes.append(buffer, 0, static_cast<std::size_t>(count));
    if (contents.bytes.size() > sizeLimit) return tl::unexpected(FileError{EFBIG, "it is far too large"});
  }
  contents.file = std::move(file);
  return contents;
}

tl::expected<ReplacedFile, FileError> replaceFile(const std::filesystem::path& path, std::string_view bytes,
                                                  mode_t mode) {
  // One name for all: what a killed process left behind is cleared away by the next.
  const auto newPath = hiddenBeside(path, ".new");
  unlink(newPath.c_str());
  FileDescriptor file(retried(
      [&] { return open(newPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode); }));
  if (!file.isOpen()) return tl::unexpected(errorOf("a new file can't be made in its folder"));
  const auto fail = [&](std::string_view what) {
    const auto code = errno;
    unlink(newPath.c_str());
    return tl::unexpected(errorOf(what, code));
  };
  if (!writeAll(file.number(), bytes)) return fail("the new file can't be written");
  if (retried([&] { return fsync(file.number()); }) != 0)
    return fail("the new file can't be brought to disk");
  if (rename(newPath.c_str(), path.c_str()) != 0) return fail("the new file can't take its place");
  // From here on the new file is the file; only a power cut right now could bring the old one back.
  const FileDescriptor folder(open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.isOpen()) retried([&] { return fsync(folder.number()); });
  // Taking the name changed the file's state.
  struct stat status {};
  fstat(file.number(), &status);
  return ReplacedFile{identityOf(status), std::move(file)};
}

tl::expected<FileLock, FileError> FileLock::take(const std::filesystem::path& path) {
  FileDescriptor file(
      retried([&] { return open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600); }));
  if (!file.isOpen()) return tl::unexpected(errorOf("its lock file can't be opened"));
  if (retried([&] { return flock(file.number(), LOCK_EX); }) == 0) return FileLock(std::move(file));
  if (errno == ENOLCK || errno == EOPNOTSUPP || errno == ENOSYS || errno == EINVAL) {
    return FileLock(FileDescriptor());
  }
  return tl::unexpected(errorOf("it can't be locked"));
}

std::optional<FileLock> FileLock::takeIfFree(const std::filesystem::path& path) {
  FileDescriptor file(
      retried([&] { return open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600); }));
  struct statfs status {};
  if (!file.isOpen() || fstatfs(file.number(), &status) != 0) return std::nullopt;
  const auto type = static_cast<std::uint64_t>(status.f_type);
  if (std::find(localTypes.begin(), localTypes.end(), type) == localTypes.end()) return std::nullopt;
  if (retried([&] { return flock(file.number(), LOCK_EX | LOCK_NB); }) != 0) return std::nullopt;
  return FileLock(std::move(file));
}

FileLock::~FileLock() {
  // Closing alone wouldn't do while a child process still holds a copy of the descriptor.
  if (file_.isOpen()) flock(file_.number(), LOCK_UN);
}

void makePrivateFolder(const std::filesystem::path& folder) noexcept {
  const auto make = [&] {
    if (mkdir(folder.c_str(), 0700) != 0) return false;
    // The mask may have taken away the owner's rights too.
    chmod(folder.c_str(), 0700);
    return true;
  };
  if (folder.empty() || make() || errno != ENOENT) return;
  makePrivateFolder(folder.parent_path());
  make();
}

}  // namespace platform
