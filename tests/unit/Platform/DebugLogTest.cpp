#include "Platform/DebugLog.h"

#include <cstdio>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

namespace platform {
namespace {

/// Standard error is the end of a pipe or of a connection whose other end the test reads, or doesn't.
class DebugLogTest : public testing::Test {
 protected:
  ~DebugLogTest() override {
    giveBack();
    if (reader >= 0) close(reader);
  }

  void take(int readEnd, int writeEnd) {
    std::fflush(stderr);
    saved_ = dup(STDERR_FILENO);
    dup2(writeEnd, STDERR_FILENO);
    close(writeEnd);
    reader = readEnd;
    fcntl(reader, F_SETFL, O_NONBLOCK);
  }
  void takePipe() {
    int ends[2] = {-1, -1};
    ASSERT_EQ(pipe(ends), 0);
    take(ends[0], ends[1]);
  }
  void takeConnection() {
    int ends[2] = {-1, -1};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    take(ends[0], ends[1]);
  }
  void giveBack() {
    if (saved_ < 0) return;
    dup2(saved_, STDERR_FILENO);
    close(saved_);
    saved_ = -1;
  }

  std::string read() const {
    std::string text;
    char buffer[65536];
    for (;;) {
      const auto count = ::read(reader, buffer, sizeof buffer);
      if (count <= 0) return text;
      text.append(buffer, static_cast<std::size_t>(count));
    }
  }

  /// What is written while nobody reads comes back, is whole lines, and the rest is told as a number.
  void checkAgainstASleepingReader() {
    constexpr int lines = 5000;
    for (int i = 0; i < lines; ++i) debugLog("line " + std::string(100, 'x'));
    auto text = read();
    int whole = 0;
    std::size_t start = 0;
    const auto expected = "line " + std::string(100, 'x');
    for (auto end = text.find('\n'); end != text.npos; end = text.find('\n', start)) {
      EXPECT_EQ(text.substr(start, end - start), expected);
      start = end + 1;
      ++whole;
    }
    const auto begun = text.substr(start);
    EXPECT_LT(whole, lines);
    debugLog("after");
    text = read();
    if (!begun.empty()) {
      EXPECT_TRUE((begun + text).starts_with(expected + "\n"));
      text.erase(0, text.find('\n') + 1);
      ++whole;
    }
    EXPECT_EQ(text, "Lines of the log that nobody read and that were dropped: " +
                        std::to_string(lines - whole) + "\nafter\n");
    debugLog("and so on");
    EXPECT_EQ(read(), "and so on\n");
  }

  int reader = -1;

 private:
  int saved_ = -1;
};

TEST_F(DebugLogTest, LinesGoToStandardError) {
  takePipe();
  debugLog("one");
  debugLog("File", "function(_:)", "two");
  EXPECT_EQ(read(), "one\nQ$: File.function(_:) two\n");
}

TEST_F(DebugLogTest, APipeThatNobodyReadsStopsNothing) {
  takePipe();
  checkAgainstASleepingReader();
}

TEST_F(DebugLogTest, AConnectionThatNobodyReadsStopsNothing) {
  takeConnection();
  checkAgainstASleepingReader();
}

TEST_F(DebugLogTest, AReaderThatIsGoneEndsNothing) {
  takePipe();
  close(reader);
  reader = -1;
  for (int i = 0; i < 3; ++i) debugLog("to nobody");
  giveBack();
  takePipe();
  debugLog("to somebody again");
  EXPECT_EQ(read(), "Lines of the log that nobody read and that were dropped: 3\nto somebody again\n");
}

TEST_F(DebugLogTest, ALineIsOneLineWhateverItsMakerLetIn) {
  takePipe();
  debugLog("a\nQ$: forged\x1b[31m" + std::string(1U << 20U, 'x'));
  const auto text = read();
  EXPECT_TRUE(text.starts_with("aQ$: forged[31mxx"));
  EXPECT_EQ(text.find('\n'), text.size() - 1);
  EXPECT_LT(text.size(), 1100U);
}

}  // namespace
}  // namespace platform
