#include "Platform/DebugLog.h"
#include "Platform/SitePermissions.h"

#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace platform {
namespace {

class SitePermissionsTest : public testing::Test {
 protected:
  SitePermissionsTest() {
    std::string pattern = (std::filesystem::temp_directory_path() / "velkin-sites-XXXXXX").string();
    folder = ::mkdtemp(pattern.data());
    setDebugLogSink([this](std::string_view line) { log += line; });
  }
  ~SitePermissionsTest() override {
    setDebugLogSink({});
    std::filesystem::remove_all(folder);
  }

  std::filesystem::path folder;
  std::filesystem::path file() const { return folder / "deep" / "sites.json"; }
  std::string log;
};

TEST_F(SitePermissionsTest, KnowsNothingAtFirst) {
  EXPECT_EQ(SitePermissions(file()).answer("https://a.test", "camera"), std::nullopt);
  EXPECT_EQ(log, "");
}

TEST_F(SitePermissionsTest, RemembersEachSiteAndKindBeyondTheProcess) {
  {
    SitePermissions permissions(file());
    permissions.remember("https://a.test", "camera", true);
    permissions.remember("https://a.test", "location", false);
  }
  const SitePermissions again(file());
  EXPECT_EQ(again.answer("https://a.test", "camera"), true);
  EXPECT_EQ(again.answer("https://a.test", "location"), false);
  EXPECT_EQ(again.answer("https://a.test", "microphone"), std::nullopt);
  EXPECT_EQ(again.answer("https://b.test", "camera"), std::nullopt);
}

TEST_F(SitePermissionsTest, AnAnswerThatIsTakenBackIsForgottenBeyondTheProcess) {
  {
    SitePermissions permissions(file());
    permissions.remember("https://a.test", "camera", true);
    permissions.remember("https://a.test", "location", true);
    permissions.forget("https://a.test", "camera");
    permissions.forget("https://b.test", "camera");
    EXPECT_EQ(permissions.answer("https://a.test", "camera"), std::nullopt);
  }
  const SitePermissions again(file());
  EXPECT_EQ(again.answer("https://a.test", "camera"), std::nullopt);
  EXPECT_EQ(again.answer("https://a.test", "location"), true);
}

TEST_F(SitePermissionsTest, AFileThatIsNoneIsReportedAndAsksAgain) {
  for (const char* content : {"", "{\"https://a.test\":", "[1,2]", "\xff\xfe"}) {
    std::filesystem::create_directories(file().parent_path());
    std::ofstream(file()) << content;
    log.clear();
    SitePermissions permissions(file());
    EXPECT_EQ(permissions.answer("https://a.test", "camera"), std::nullopt) << content;
    EXPECT_NE(log.find("asked for again"), std::string::npos) << content;
  }
}

TEST_F(SitePermissionsTest, ValuesOfAnotherTypeReadAsAbsent) {
  std::filesystem::create_directories(file().parent_path());
  std::ofstream(file()) << R"({"https://a.test": {"camera": "yes", "location": true}, "https://b.test": 5})";
  const SitePermissions permissions(file());
  EXPECT_EQ(permissions.answer("https://a.test", "camera"), std::nullopt);
  EXPECT_EQ(permissions.answer("https://a.test", "location"), true);
}

TEST_F(SitePermissionsTest, AnAnswerThatCantBeWrittenHoldsInMemoryAndIsLogged) {
  std::ofstream(folder / "deep") << "in the way";
  SitePermissions permissions(file());
  permissions.remember("https://a.test", "camera", true);
  EXPECT_EQ(permissions.answer("https://a.test", "camera"), true);
  EXPECT_NE(log.find("save()"), std::string::npos);
}

TEST_F(SitePermissionsTest, APipeIsNeitherReadNorWrittenInto) {
  std::filesystem::create_directories(file().parent_path());
  ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
  SitePermissions permissions(file());
  EXPECT_NE(log.find("asked for again"), std::string::npos);
  permissions.remember("https://a.test", "camera", true);
  EXPECT_EQ(SitePermissions(file()).answer("https://a.test", "camera"), true) << "a file stands in its place";
}

TEST_F(SitePermissionsTest, AFileOfAnySizeIsNoneIfItIsTooLarge) {
  std::filesystem::create_directories(file().parent_path());
  std::ofstream(file()) << '{' << std::string(2U << 20U, ' ') << '}';
  const SitePermissions permissions(file());
  EXPECT_NE(log.find("asked for again"), std::string::npos);
}

TEST_F(SitePermissionsTest, TheAnswersAreTheirOwners) {
  SitePermissions(file()).remember("https://a.test", "camera", true);
  EXPECT_EQ(std::filesystem::status(file()).permissions(), std::filesystem::perms(0600));
}

}  // namespace
}  // namespace platform
