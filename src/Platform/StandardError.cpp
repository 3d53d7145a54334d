#include "Platform/StandardError.h"

#include "Platform/SignalBlock.h"

#include <algorithm>
#include <cerrno>
#include <climits>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

static_assert(StandardError::longestLine + 96 <= PIPE_BUF, "with the note of dropped lines before it");

StandardError& StandardError::shared() {
  static StandardError lines;
  return lines;
}

void StandardError::writeLine(std::string_view line) {
  if (!rest_.empty()) rest_.erase(0, write(rest_));
  if (!rest_.empty()) {
    ++dropped_;
    return;
  }
  std::string text;
  if (dropped_ > 0)
    text = "Lines of the log that nobody read and that were dropped: " + std::to_string(dropped_) + '\n';
  text.append(line.substr(0, longestLine)) += '\n';
  const auto written = write(text);
  if (written == 0) {
    ++dropped_;
    return;
  }
  dropped_ = 0;
  rest_ = text.substr(written);
}

int StandardError::writable(bool isOrdinaryFile) {
  // At the end of what others wrote, which a way of our own would not know.
  if (isOrdinaryFile) return file_;
  if (const int own = withoutWaiting(); own >= 0) return own;
  pollfd room{file_, POLLOUT, 0};
  return poll(&room, 1, 0) == 1 ? file_ : -1;
}

std::size_t StandardError::write(std::string_view text) {
  struct stat status {};
  if (fstat(file_, &status) != 0) return 0;
  if (status.st_dev != device_ || status.st_ino != number_) {
    device_ = status.st_dev;
    number_ = status.st_ino;
    own_ = FileDescriptor();
  }
  const SignalBlock block(SIGPIPE);
  ssize_t count = -1;
  if (S_ISSOCK(status.st_mode)) {
    count = send(file_, text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
  } else if (const int file = writable(S_ISREG(status.st_mode)); file >= 0) {
    count = ::write(file, text.data(), text.size());
  }
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

int StandardError::withoutWaiting() {
  // Not by a flag on the standard one: that would change it for all who share it.
  if (!own_.isOpen()) {
    const auto path = "/proc/self/fd/" + std::to_string(file_);
    own_ = FileDescriptor(open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  }
  return own_.number();
}

}  // namespace platform
