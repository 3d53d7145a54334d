#include "Platform/DebugLog.h"
#include "Platform/FileUserDefaults.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "gtest/gtest.h"
#include "unit/TemporaryFolder.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <mutex>
#include <optional>
#include <thread>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace platform {
namespace {

using velkin::contentsOf;
using velkin::writeFile;
namespace fs = std::filesystem;

class FileUserDefaultsTest : public testing::Test {
 protected:
  FileUserDefaultsTest() {
    setDebugLogSink([this](std::string_view line) { log_.emplace_back(line); });
  }
  ~FileUserDefaultsTest() override { setDebugLogSink({}); }

  PropertyListValue::Dictionary onDisk() const {
    const auto list = readPropertyList(contentsOf(path_));
    const auto* dictionary = list ? list->as<PropertyListValue::Dictionary>() : nullptr;
    EXPECT_NE(dictionary, nullptr) << contentsOf(path_);
    return dictionary != nullptr ? *dictionary : PropertyListValue::Dictionary();
  }

  std::vector<std::string> filesBeside() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path_.parent_path())) {
      const auto name = entry.path().filename().string();
      if (name != path_.filename() && !name.ends_with(".lock")) names.push_back(name);
    }
    return names;
  }

  bool logSays(std::string_view text) const {
    return std::any_of(log_.begin(), log_.end(),
                       [&](const auto& line) { return line.find(text) != line.npos; });
  }

  static mode_t modeOf(const fs::path& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
  }

  HeadlessPlatform platform_;
  velkin::TemporaryFolder folder_;
  fs::path path_ = folder_.path() / "config" / "velkin" / "domain.plist";
  std::vector<std::string> log_;
};

TEST_F(FileUserDefaultsTest, aFreshDomainIsEmptyAndMakesNoFile) {
  const FileUserDefaults defaults(path_);
  EXPECT_FALSE(defaults.valueForKey("k"));
  EXPECT_FALSE(fs::exists(path_.parent_path()));
  EXPECT_TRUE(log_.empty());
}

TEST_F(FileUserDefaultsTest, aSetIsOnDiskWhenItReturns) {
  FileUserDefaults defaults(path_);
  defaults.setObject(1.2, "zoomLevel");
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"zoomLevel", 1.2}}));
  defaults.setObject("text", "chatUrl");
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"zoomLevel", 1.2}, {"chatUrl", "text"}}));
  defaults.removeObjectForKey("zoomLevel");
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"chatUrl", "text"}}));
}

TEST_F(FileUserDefaultsTest, setsTogetherAreReadAtOnceAndWrittenInOneGoAtTheEnd) {
  FileUserDefaults defaults(path_);
  defaults.setObject(0, "earlier");
  const auto before = identityOf(path_);
  {
    const NSUserDefaults::Together together(defaults);
    defaults.setObject(1, "a");
    {
      const NSUserDefaults::Together inner(defaults);
      defaults.setObject(2, "b");
    }
    defaults.removeObjectForKey("earlier");
    EXPECT_EQ(identityOf(path_), before) << "the outermost is still open";
    EXPECT_EQ(defaults.integerForKey("a"), 1);
    EXPECT_EQ(defaults.integerForKey("b"), 2);
    EXPECT_FALSE(defaults.valueForKey("earlier"));
  }
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"a", 1}, {"b", 2}}));
  const auto after = identityOf(path_);
  { const NSUserDefaults::Together nothingIsSet(defaults); }
  EXPECT_EQ(identityOf(path_), after);
  defaults.setObject(3, "c");
  EXPECT_EQ(onDisk().at("c"), PropertyListValue(3)) << "from here on every set is written again";
}

TEST_F(FileUserDefaultsTest, theNextProcessReadsWhatWasSet) {
  FileUserDefaults(path_).setObject(true, "stickyMenu");
  EXPECT_TRUE(FileUserDefaults(path_).boolForKey("stickyMenu"));
}

TEST_F(FileUserDefaultsTest, theFileIsXMLAndForItsOwnerOnly) {
  const auto mask = umask(0);
  FileUserDefaults(path_).setObject("secret", "searchBarKey");
  umask(mask);
  EXPECT_TRUE(contentsOf(path_).starts_with("<?xml"));
  EXPECT_EQ(modeOf(path_), 0600U);
  EXPECT_EQ(modeOf(path_.parent_path()), 0700U);
  EXPECT_EQ(modeOf(path_.parent_path().parent_path()), 0700U);
}

TEST_F(FileUserDefaultsTest, aFileThatOthersCouldReadIsClosedToThemByTheNextSet) {
  fs::create_directories(path_.parent_path());
  writeFile(path_, *writeXMLPropertyList(PropertyListValue::Dictionary{{"a", 1}}));
  chmod(path_.c_str(), 0644);
  FileUserDefaults(path_).setObject(2, "b");
  EXPECT_EQ(modeOf(path_), 0600U);
}

TEST_F(FileUserDefaultsTest, nothingIsLeftBesideTheFile) {
  FileUserDefaults defaults(path_);
  for (int i = 0; i < 5; ++i) defaults.setObject(i, "k");
  EXPECT_TRUE(filesBeside().empty());
}

TEST_F(FileUserDefaultsTest, everySetIsANewFileInTheOldOnesPlace) {
  FileUserDefaults defaults(path_);
  defaults.setObject(1, "k");
  const auto before = open(path_.c_str(), O_RDONLY | O_CLOEXEC);
  const auto text = contentsOf(path_);
  const auto first = identityOf(path_);
  defaults.setObject(2, "k");
  EXPECT_NE(identityOf(path_).number, first.number);
  std::string old(text.size(), '\0');
  EXPECT_EQ(read(before, old.data(), old.size()), static_cast<ssize_t>(text.size()));
  close(before);
  EXPECT_EQ(old, text) << "the old file was never written to";
}

TEST_F(FileUserDefaultsTest, anEqualValueIsNotWrittenAgain) {
  FileUserDefaults defaults(path_);
  defaults.setObject(600.0, "viewWidth");
  const auto before = identityOf(path_);
  defaults.setObject(600.0, "viewWidth");
  defaults.removeObjectForKey("absent");
  EXPECT_EQ(identityOf(path_), before);
  defaults.setObject(600, "viewWidth");
  EXPECT_NE(identityOf(path_), before) << "another type is another value";
}

TEST_F(FileUserDefaultsTest, anEqualValueThatIsNoLongerOnDiskIsWritten) {
  FileUserDefaults defaults(path_);
  defaults.setObject(1, "k");
  FileUserDefaults(path_).setObject(2, "k");
  defaults.setObject(1, "k");
  EXPECT_EQ(onDisk().at("k"), PropertyListValue(1));
}

TEST_F(FileUserDefaultsTest, textsThatNoFileCanHoldReadTheSameBeforeAndAfterARestart) {
  FileUserDefaults defaults(path_);
  defaults.setObject(std::string("a\0\xFF", 3), "k");
  const auto before = defaults.stringForKey("k");
  EXPECT_EQ(before, "a\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(FileUserDefaults(path_).stringForKey("k"), before);
}

TEST_F(FileUserDefaultsTest, theOthersKeysSurviveOurWrites) {
  FileUserDefaults ours(path_);
  ours.setObject(1, "ours");
  FileUserDefaults theirs(path_);
  theirs.setObject(2, "theirs");
  theirs.setObject(3, "ours");
  ours.setObject(4, "more");
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"ours", 3}, {"theirs", 2}, {"more", 4}}));
}

TEST_F(FileUserDefaultsTest, theOthersRemovalSurvivesOurWrites) {
  FileUserDefaults ours(path_);
  ours.setObject(1, "a");
  FileUserDefaults(path_).removeObjectForKey("a");
  ours.setObject(2, "b");
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"b", 2}}));
}

TEST_F(FileUserDefaultsTest, theOthersChangeIsSeenByTheNextRead) {
  FileUserDefaults ours(path_);
  FileUserDefaults theirs(path_);
  for (int i = 0; i < 50; ++i) {
    theirs.setObject(i, "k");
    EXPECT_EQ(ours.integerForKey("k"), i) << "same size, same tick of the clock";
  }
  theirs.removeObjectForKey("k");
  EXPECT_FALSE(ours.valueForKey("k"));
}

TEST_F(FileUserDefaultsTest, aFileThatIsTakenAwayReadsAsEmptyAndComesBackWithTheNextSet) {
  FileUserDefaults defaults(path_);
  defaults.setObject(1, "a");
  fs::remove_all(path_.parent_path());
  EXPECT_FALSE(defaults.valueForKey("a"));
  defaults.setObject(2, "b");
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"b", 2}}));
}

TEST_F(FileUserDefaultsTest, aFileThatIsRenamedReadsAsEmptyAndStaysWhatItWas) {
  FileUserDefaults defaults(path_);
  defaults.setObject(1, "a");
  const auto elsewhere = folder_.path() / "elsewhere.plist";
  fs::rename(path_, elsewhere);
  const auto kept = contentsOf(elsewhere);
  EXPECT_FALSE(defaults.valueForKey("a"));
  defaults.setObject(2, "b");
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"b", 2}}));
  EXPECT_EQ(contentsOf(elsewhere), kept);
}

TEST_F(FileUserDefaultsTest, aFileMovedIntoThePlaceOfOursIsReadNext) {
  FileUserDefaults defaults(path_);
  for (int i = 0; i < 50; ++i) {
    defaults.setObject(0, "k");
    const auto other = folder_.path() / "other.plist";
    FileUserDefaults(other).setObject(5, "k");
    fs::rename(other, path_);
    EXPECT_EQ(defaults.integerForKey("k"), 5) << "same size, perhaps the same tick of the clock";
  }
}

TEST_F(FileUserDefaultsTest, aFolderExchangedForAnotherKeepsTheOthersKeys) {
  FileUserDefaults defaults(path_);
  defaults.setObject(1, "a");
  const auto folder = path_.parent_path();
  fs::rename(folder, folder_.path() / "elsewhere");
  FileUserDefaults(path_).setObject(5, "theirs");
  defaults.setObject(2, "b");
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"b", 2}, {"theirs", 5}}));
  EXPECT_FALSE(defaults.valueForKey("a"));
  EXPECT_EQ(defaults.integerForKey("theirs"), 5);
}

TEST_F(FileUserDefaultsTest, aFolderTakenAwayComesBackWithASetOfTheSameValue) {
  FileUserDefaults defaults(path_);
  defaults.setObject(1, "a");
  fs::rename(path_.parent_path(), folder_.path() / "elsewhere");
  defaults.setObject(1, "a");
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"a", 1}}));
}

TEST_F(FileUserDefaultsTest, aBinaryFileIsReadAndBecomesXML) {
  fs::create_directories(path_.parent_path());
  // {"k": true}
  writeFile(path_, std::string("bplist00\xD1\x01\x02Qk\x09\x08\x0B\x0D\0\0\0\0\0\0\x01\x01\0\0\0\0\0\0\0\x03"
                               "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x0E",
                               8 + 6 + 3 + 32));
  FileUserDefaults defaults(path_);
  EXPECT_TRUE(defaults.boolForKey("k"));
  defaults.setObject(1, "more");
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"k", true}, {"more", 1}}));
}

class DamagedFileTest : public FileUserDefaultsTest, public testing::WithParamInterface<std::string> {};

TEST_P(DamagedFileTest, isKeptBesideReportedOnceAndReplacedByDefaults) {
  fs::create_directories(path_.parent_path());
  writeFile(path_, GetParam());
  platform_.queue.setNow(1'700'000'000);
  FileUserDefaults defaults(path_);
  EXPECT_FALSE(defaults.valueForKey("k"));
  const std::vector<std::string> kept = {"domain.plist.corrupt-20231114T221320Z"};
  EXPECT_EQ(filesBeside(), kept);
  EXPECT_EQ(contentsOf(path_.parent_path() / kept[0]), GetParam());
  defaults.setObject(1, "k");
  EXPECT_EQ(defaults.integerForKey("k"), 1);
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"k", 1}}));
  EXPECT_EQ(log_.size(), 1U) << "reported once";
  EXPECT_TRUE(logSays(kept[0]));
}

INSTANTIATE_TEST_SUITE_P(
    FileUserDefaultsTest, DamagedFileTest,
    testing::Values("", "no list", std::string("\0\x01\xFF", 3), "bplist00garbage",
                    "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>k</key><integ",
                    "<plist version=\"1.0\"><array><true/></array></plist>",
                    "<plist version=\"1.0\"><string>k</string></plist>"));

TEST_F(FileUserDefaultsTest, aSecondDamagedFileOfTheSameSecondDoesNotOverwriteTheFirst) {
  fs::create_directories(path_.parent_path());
  for (const char* text : {"first", "second"}) {
    writeFile(path_, text);
    const FileUserDefaults defaults(path_);
  }
  EXPECT_EQ(filesBeside().size(), 2U);
}

TEST_F(FileUserDefaultsTest, aFileDamagedWhileWeRunCostsNoSetting) {
  FileUserDefaults defaults(path_);
  defaults.setObject(1, "a");
  writeFile(path_, "half a file, as an editor may");
  EXPECT_EQ(defaults.integerForKey("a"), 1);
  EXPECT_EQ(defaults.integerForKey("a"), 1);
  EXPECT_TRUE(filesBeside().empty()) << "the editor is not disturbed";
  EXPECT_EQ(log_.size(), 1U);
  defaults.setObject(2, "b");
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"a", 1}, {"b", 2}}));
  EXPECT_EQ(filesBeside().size(), 1U);
}

TEST_F(FileUserDefaultsTest, wrongTypesForEveryKeyReadAsAbsent) {
  fs::create_directories(path_.parent_path());
  writeFile(path_, *writeXMLPropertyList(PropertyListValue::Dictionary{
                       {"zoomLevel", "big"}, {"stickyMenu", 1}, {"chatUrl", PropertyListValue::Array{1}}}));
  const FileUserDefaults defaults(path_);
  EXPECT_EQ(defaults.floatForKey("zoomLevel"), 0);
  EXPECT_FALSE(defaults.boolForKey("stickyMenu"));
  EXPECT_FALSE(defaults.stringForKey("chatUrl"));
}

TEST_F(FileUserDefaultsTest, aFolderInTheFilesPlaceStaysAndValuesStayInMemory) {
  fs::create_directories(path_ / "precious");
  FileUserDefaults defaults(path_);
  EXPECT_TRUE(logSays("it is a folder"));
  log_.clear();
  defaults.setObject(1, "k");
  EXPECT_EQ(defaults.integerForKey("k"), 1);
  EXPECT_TRUE(fs::is_directory(path_ / "precious"));
  EXPECT_TRUE(logSays("kept in memory only"));
  EXPECT_TRUE(logSays("it is a folder"));
  fs::remove_all(path_);
  defaults.setObject(2, "later");
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"k", 1}, {"later", 2}}));
}

TEST_F(FileUserDefaultsTest, aPipeInTheFilesPlaceIsNotWaitedFor) {
  fs::create_directories(path_.parent_path());
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  FileUserDefaults defaults(path_);
  defaults.setObject(1, "k");
  EXPECT_EQ(defaults.integerForKey("k"), 1);
  EXPECT_TRUE(logSays("no regular file"));
}

TEST_F(FileUserDefaultsTest, aSymbolicLinkStaysOneAndItsTargetIsWritten) {
  fs::create_directories(path_.parent_path());
  const auto target = folder_.path() / "elsewhere.plist";
  writeFile(target, *writeXMLPropertyList(PropertyListValue::Dictionary{{"a", 1}}));
  fs::create_symlink(target, path_);
  FileUserDefaults(path_).setObject(2, "b");
  EXPECT_TRUE(fs::is_symlink(path_));
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"a", 1}, {"b", 2}}));
}

TEST_F(FileUserDefaultsTest, aLinkThatLeadsToNothingIsFollowedWhenTheFileIsWritten) {
  const auto target = folder_.path() / "not" / "yet" / "there.plist";
  fs::create_directories(path_.parent_path());
  fs::create_symlink("../../not/yet/there.plist", path_);
  FileUserDefaults(path_).setObject(1, "a");
  EXPECT_TRUE(fs::is_symlink(path_));
  EXPECT_TRUE(fs::is_regular_file(target));
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"a", 1}}));
}

TEST_F(FileUserDefaultsTest, aFolderThatIsALinkToNothingIsFollowedToo) {
  fs::create_directories(path_.parent_path().parent_path());
  fs::create_directory_symlink(folder_.path() / "other disk", path_.parent_path());
  FileUserDefaults(path_).setObject(1, "a");
  EXPECT_TRUE(fs::is_symlink(path_.parent_path()));
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"a", 1}}));
}

TEST_F(FileUserDefaultsTest, aLinkToItselfKeepsValuesInMemory) {
  fs::create_directories(path_.parent_path());
  fs::create_symlink(path_, path_);
  FileUserDefaults defaults(path_);
  defaults.setObject(1, "a");
  EXPECT_EQ(defaults.integerForKey("a"), 1);
}

TEST_F(FileUserDefaultsTest, foldersAreTheOwnersUnderAnyMask) {
  const auto mask = umask(0777);
  FileUserDefaults(path_).setObject(1, "a");
  umask(mask);
  EXPECT_EQ(modeOf(path_.parent_path()), 0700U);
  EXPECT_EQ(modeOf(path_.parent_path().parent_path()), 0700U);
}

/// Another process that holds the lock: for the kernel, another opening of the file.
class ForeignLock {
 public:
  explicit ForeignLock(const fs::path& settings) {
    fs::create_directories(settings.parent_path());
    const auto path = settings.parent_path() / ("." + settings.filename().string() + ".lock");
    lock_.emplace(FileLock::take(path));
  }
  void release() { lock_.reset(); }

 private:
  std::optional<tl::expected<FileLock, FileError>> lock_;
};

template <class Condition>
bool comesTrue(Condition condition) {
  for (int i = 0; i < 3000 && !condition(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  return condition();
}

class LockedFileTest : public FileUserDefaultsTest {
 protected:
  LockedFileTest() {
    setDebugLogSink([this](std::string_view line) {
      const std::lock_guard lock(logMutex_);
      log_.emplace_back(line);
    });
  }
  ~LockedFileTest() override { setDebugLogSink({}); }
  bool isOnDisk(const PropertyListValue::Dictionary& wanted) const {
    const auto list = readPropertyList(contentsOf(path_));
    return list && *list == PropertyListValue(wanted);
  }

  std::mutex logMutex_;
};

TEST_F(LockedFileTest, valuesHoldAndAreWrittenInOneGoWhenTheOtherLetsGo) {
  ForeignLock foreign(path_);
  FileUserDefaults defaults(path_);
  // All of them come back while the other process still holds the lock.
  for (int i = 1; i <= 50; ++i) defaults.setObject(i, "last");
  defaults.setObject("kept", "first");
  defaults.setObject(1, "gone");
  defaults.removeObjectForKey("gone");
  EXPECT_EQ(defaults.integerForKey("last"), 50);
  EXPECT_EQ(defaults.stringForKey("first"), "kept");
  EXPECT_FALSE(fs::exists(path_));
  {
    const std::lock_guard lock(logMutex_);
    EXPECT_TRUE(logSays("kept in memory only"));
  }
  foreign.release();
  EXPECT_TRUE(comesTrue([&] { return isOnDisk({{"first", "kept"}, {"last", 50}}); })) << contentsOf(path_);
  defaults.setObject(51, "last");
  EXPECT_TRUE(isOnDisk({{"first", "kept"}, {"last", 51}}))
      << "from here on each set is on disk when it returns";
}

TEST_F(LockedFileTest, theOthersChangesSurvive) {
  FileUserDefaults(path_).setObject(1, "theirs");
  ForeignLock foreign(path_);
  FileUserDefaults defaults(path_);
  defaults.setObject(2, "ours");
  ASSERT_TRUE(replaceFile(path_, *writeXMLPropertyList(PropertyListValue::Dictionary{{"theirs", 3}})));
  foreign.release();
  EXPECT_TRUE(comesTrue([&] { return isOnDisk({{"ours", 2}, {"theirs", 3}}); })) << contentsOf(path_);
}

TEST_F(LockedFileTest, aDamagedFileDoesNotHoldUpTheStart) {
  fs::create_directories(path_.parent_path());
  writeFile(path_, "no list");
  ForeignLock foreign(path_);
  FileUserDefaults defaults(path_);
  defaults.setObject(1, "a");
  EXPECT_EQ(defaults.integerForKey("a"), 1);
  foreign.release();
  EXPECT_TRUE(comesTrue([&] { return isOnDisk({{"a", 1}}); }));
}

TEST_F(LockedFileTest, theStoreMayEndWhileTheLockIsWaitedFor) {
  ForeignLock foreign(path_);
  {
    FileUserDefaults defaults(path_);
    defaults.setObject(1, "a");
  }
  foreign.release();
  FileUserDefaults next(path_);
  next.setObject(2, "b");
  EXPECT_TRUE(isOnDisk({{"b", 2}}));
}

TEST_F(LockedFileTest, aStoreThatEndsWaitsForALockThatIsJustLetGo) {
  ForeignLock foreign(path_);
  {
    FileUserDefaults defaults(path_);
    defaults.setObject(1, "a");
    foreign.release();
  }
  EXPECT_TRUE(isOnDisk({{"a", 1}})) << contentsOf(path_);
}

TEST_F(LockedFileTest, theProcessesEndWaitsForALockThatIsJustLetGo) {
  ForeignLock foreign(path_);
  FileUserDefaults defaults(path_);
  defaults.setObject(1, "a");
  foreign.release();
  defaults.storeWhatIsHeldBack();
  EXPECT_TRUE(isOnDisk({{"a", 1}})) << contentsOf(path_);
}

TEST_F(LockedFileTest, aBatchThatIsOpenWhenTheLockComesIsWrittenAtItsEnd) {
  ForeignLock foreign(path_);
  FileUserDefaults defaults(path_);
  defaults.setObject(1, "a");
  {
    const NSUserDefaults::Together together(defaults);
    defaults.setObject(2, "b");
    foreign.release();
  }
  EXPECT_TRUE(comesTrue([&] { return isOnDisk({{"a", 1}, {"b", 2}}); }));
}

TEST_F(FileUserDefaultsTest, whatIsHeldBackIsStoredAtTheProcessesEnd) {
  FileUserDefaults defaults(path_);
  const NSUserDefaults::Together together(defaults);
  defaults.setObject(1, "a");
  EXPECT_FALSE(fs::exists(path_));
  defaults.storeWhatIsHeldBack();
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"a", 1}}));
}

/// The largest settings file of these tests: the real one's 32 MiB take minutes under a sanitizer.
constexpr std::size_t smallFile = std::size_t{1} << 20U;

TEST_F(FileUserDefaultsTest, aSetThatIsTooLargeIsRefusedAndLosesNothing) {
  FileUserDefaults defaults(path_, smallFile);
  defaults.setObject("sk-key", "key");
  defaults.setObject("small", "history");
  defaults.setObject(std::string(smallFile, 'x'), "history");
  EXPECT_TRUE(logSays("bytes for history is not stored"));
  EXPECT_EQ(defaults.stringForKey("history"), "small");
  defaults.setObject(1, "more");
  const FileUserDefaults next(path_);
  EXPECT_EQ(next.stringForKey("key"), "sk-key");
  EXPECT_EQ(next.stringForKey("history"), "small");
  EXPECT_EQ(next.integerForKey("more"), 1);
}

TEST_F(FileUserDefaultsTest, whatTheTextTakesInTheFileCounts) {
  // Five bytes for each in the file.
  const std::string text(smallFile / 4, '&');
  FileUserDefaults defaults(path_, smallFile);
  defaults.setObject(text, "history");
  EXPECT_FALSE(defaults.valueForKey("history"));
  {
    const NSUserDefaults::Together together(defaults);
    for (int i = 0; i < 5; ++i) defaults.setObject(text.substr(0, text.size() / 4), std::to_string(i));
  }
  EXPECT_TRUE(defaults.valueForKey("2"));
  EXPECT_FALSE(defaults.valueForKey("4")) << "what a batch holds counts as well";
  const FileUserDefaults next(path_);
  EXPECT_TRUE(next.valueForKey("2"));
  EXPECT_LE(fs::file_size(path_), smallFile);
}

TEST_F(FileUserDefaultsTest, whatIsTooDeepToBeReadIsRefused) {
  FileUserDefaults defaults(path_);
  PropertyListValue deep = 1;
  for (int i = 0; i < deepestPropertyList; ++i) deep = PropertyListValue::Array{deep};
  defaults.setObject(deep, "deep");
  defaults.setObject(PropertyListValue::Array(mostPropertyListContainers, PropertyListValue::Array()),
                     "many");
  defaults.setObject(1, "k");
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"k", 1}}));
}

TEST_F(FileUserDefaultsTest, aFileThatAnEarlierVersionLetGrowTakesSmallSets) {
  fs::create_directories(path_.parent_path());
  const std::string grown(smallFile + 1000, 'x');
  writeFile(path_, *writeXMLPropertyList(PropertyListValue::Dictionary{{"history", grown}}));
  FileUserDefaults defaults(path_, smallFile);
  defaults.setObject("sk-key", "key");
  defaults.setObject(grown.substr(0, smallFile / 4), "too large");
  defaults.setObject(grown.substr(0, smallFile / 2), "history");
  const FileUserDefaults next(path_);
  EXPECT_EQ(next.stringForKey("key"), "sk-key");
  EXPECT_FALSE(next.valueForKey("too large"));
  EXPECT_EQ(next.stringForKey("history")->size(), smallFile / 2);
}

/// The process may write no file beyond `bytes` while this lives: what a full disk looks like to a writer.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit tight{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &tight);
  }
  ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before_); }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit before_{};
};

TEST_F(FileUserDefaultsTest, aFullDiskLeavesTheOldFileWholeAndTheNextSetTriesAgain) {
  FileUserDefaults defaults(path_);
  defaults.setObject("old", "k");
  const auto before = contentsOf(path_);
  {
    const FullDisk full(before.size() / 2);
    defaults.setObject("new", "k");
    EXPECT_EQ(contentsOf(path_), before);
    EXPECT_EQ(defaults.stringForKey("k"), "new") << "it holds for this process";
    EXPECT_TRUE(logSays("kept in memory only"));
    EXPECT_TRUE(logSays("File too large")) << log_.back();
    EXPECT_TRUE(filesBeside().empty());
    EXPECT_EQ(FileUserDefaults(path_).stringForKey("k"), "old");
  }
  defaults.setObject(1, "later");
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"k", "new"}, {"later", 1}}));
}

TEST_F(FileUserDefaultsTest, settingAgainWhatCouldNotBeWrittenTriesAgain) {
  FileUserDefaults defaults(path_);
  {
    const FullDisk full(10);
    defaults.setObject("new", "k");
    defaults.removeObjectForKey("absent");
  }
  defaults.setObject("new", "k");
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"k", "new"}}));
}

TEST_F(FileUserDefaultsTest, whatCouldNotBeWrittenHoldsAgainstTheOthersChange) {
  FileUserDefaults ours(path_);
  ours.setObject(1, "a");
  ours.setObject(1, "gone");
  {
    const FullDisk full(10);
    ours.setObject(2, "a");
    ours.removeObjectForKey("gone");
  }
  FileUserDefaults(path_).setObject(3, "b");
  EXPECT_EQ(ours.integerForKey("a"), 2);
  EXPECT_EQ(ours.integerForKey("b"), 3);
  EXPECT_FALSE(ours.valueForKey("gone"));
  ours.setObject(4, "c");
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"a", 2}, {"b", 3}, {"c", 4}}));
}

/// Runs `work` in a child process that no permission is waived for; true if it returned true.
bool asOrdinaryUser(const std::function<bool()>& work) {
  std::fflush(nullptr);
  const auto child = fork();
  if (child == 0) {
    constexpr uid_t nobody = 65534;
    if (geteuid() == 0 &&
        (setresgid(nobody, nobody, nobody) != 0 || setresuid(nobody, nobody, nobody) != 0)) {
      _exit(2);
    }
    _exit(work() ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST_F(FileUserDefaultsTest, anUnreadableFileIsNeverOverwritten) {
  fs::create_directories(path_.parent_path());
  for (auto at = path_.parent_path(); at != folder_.path().parent_path(); at = at.parent_path())
    chmod(at.c_str(), 0777);
  writeFile(path_, "out of sight");
  chmod(path_.c_str(), 0);
  EXPECT_TRUE(asOrdinaryUser([this] {
    FileUserDefaults defaults(path_);
    const bool isReported = logSays("Permission denied");
    log_.clear();
    defaults.setObject(1, "k");
    return isReported && defaults.integerForKey("k") == 1 && logSays("kept in memory only") &&
           logSays("Permission denied");
  }));
  chmod(path_.c_str(), 0600);
  EXPECT_EQ(contentsOf(path_), "out of sight");
}

TEST_F(FileUserDefaultsTest, aReadOnlyFolderKeepsValuesInMemory) {
  FileUserDefaults(path_).setObject(1, "a");
  chmod(path_.c_str(), 0644);
  for (auto at = path_.parent_path(); at != folder_.path().parent_path(); at = at.parent_path())
    chmod(at.c_str(), 0555);
  const auto before = contentsOf(path_);
  EXPECT_TRUE(asOrdinaryUser([this] {
    FileUserDefaults defaults(path_);
    const bool isRead = defaults.integerForKey("a") == 1;
    defaults.setObject(2, "a");
    return isRead && defaults.integerForKey("a") == 2 && logSays("kept in memory only") &&
           logSays("Permission denied");
  }));
  EXPECT_EQ(contentsOf(path_), before);
  for (auto at = path_.parent_path(); at != folder_.path().parent_path(); at = at.parent_path())
    chmod(at.c_str(), 0700);
}

TEST_F(FileUserDefaultsTest, aDamagedFileInAReadOnlyFolderStays) {
  fs::create_directories(path_.parent_path());
  writeFile(path_, "no list");
  chmod(path_.c_str(), 0644);
  for (auto at = path_.parent_path(); at != folder_.path().parent_path(); at = at.parent_path())
    chmod(at.c_str(), 0555);
  EXPECT_TRUE(asOrdinaryUser([this] {
    FileUserDefaults defaults(path_);
    defaults.setObject(2, "a");
    return defaults.integerForKey("a") == 2 && logSays("can't be renamed");
  }));
  EXPECT_EQ(contentsOf(path_), "no list");
  for (auto at = path_.parent_path(); at != folder_.path().parent_path(); at = at.parent_path())
    chmod(at.c_str(), 0700);
}

TEST_F(FileUserDefaultsTest, aValueNeverReachesTheLog) {
  FileUserDefaults defaults(path_);
  const FullDisk full(10);
  defaults.setObject("sk-secret", "searchBarKey");
  EXPECT_FALSE(log_.empty());
  EXPECT_FALSE(logSays("sk-secret"));
}

TEST_F(FileUserDefaultsTest, whoListensToTheLogMayReadASetting) {
  FileUserDefaults* listening = nullptr;
  std::int64_t heard = 0;
  FileUserDefaults defaults(path_);
  listening = &defaults;
  setDebugLogSink([&](std::string_view) { heard = listening->integerForKey("k"); });
  const FullDisk full(10);
  defaults.setObject(7, "k");
  EXPECT_EQ(heard, 7);
}

std::size_t openFiles() {
  const auto all = fs::directory_iterator("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(fs::begin(all), fs::end(all)));
}

TEST_F(FileUserDefaultsTest, noFileIsLeftOpenBehind) {
  const auto before = openFiles();
  {
    FileUserDefaults defaults(path_);
    for (int i = 0; i < 20; ++i) {
      defaults.setObject(i, "k");
      FileUserDefaults(path_).setObject(i, "other");
      defaults.integerForKey("other");
    }
    EXPECT_LE(openFiles(), before + 1) << "the one that was read last";
  }
  EXPECT_EQ(openFiles(), before);
}

TEST_F(FileUserDefaultsTest, everyOperationMayRunOnAnyThread) {
  FileUserDefaults defaults(path_);
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&, thread] {
      const auto key = "k" + std::to_string(thread);
      for (int i = 1; i <= 25; ++i) {
        defaults.setObject(i, key);
        EXPECT_EQ(defaults.integerForKey(key), i);
        if (i % 5 == 0) defaults.removeObjectForKey("other" + key);
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(onDisk(), (PropertyListValue::Dictionary{{"k0", 25}, {"k1", 25}, {"k2", 25}, {"k3", 25}}));
}

TEST_F(FileUserDefaultsTest, twoStoresWritingAtOnceLoseNothing) {
  // Each has its own lock and memory, as two processes have.
  FileUserDefaults first(path_);
  FileUserDefaults second(path_);
  const auto fill = [](FileUserDefaults& defaults, std::string_view name) {
    for (int i = 0; i < 30; ++i) defaults.setObject(i, std::string(name) + std::to_string(i));
  };
  std::thread one([&] { fill(first, "first"); });
  std::thread two([&] { fill(second, "second"); });
  one.join();
  two.join();
  EXPECT_EQ(onDisk().size(), 60U);
}

}  // namespace
}  // namespace platform
