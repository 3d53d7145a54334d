#include "Platform/Headless/HeadlessPlatform.h"
#include "UserData/SettingsManager.h"
#include "UserData/VelkinSettingsFields.h"
#include "UserData/VelkinSettingsJSON.h"

#include <random>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace velkin {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

VelkinSettings decoded(std::string_view text) {
  auto settings = decodeVelkinSettings(text);
  EXPECT_TRUE(settings) << text << ": " << settings.error();
  return settings.value_or(VelkinSettings{});
}

std::string failure(std::string_view text) {
  const auto settings = decodeVelkinSettings(text);
  EXPECT_FALSE(settings) << text;
  return settings ? std::string() : settings.error();
}

std::string keyOf(const VelkinSettingsField& field) {
  return std::string(settingRow(field.setting).documentKey);
}

TEST(VelkinSettingsFieldsTest, AreTheDocumentsRowsOfTheTableInItsOrder) {
  std::vector<UserDefault> expected;
  for (const auto& row : settingRows) {
    if (!row.documentKey.empty()) expected.push_back(row.setting);
  }
  ASSERT_EQ(expected.size(), 29U);
  ASSERT_EQ(velkinSettingsFields.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(velkinSettingsFields[i].setting, expected[i]);
    // Both list the types in the same order.
    EXPECT_EQ(velkinSettingsFields[i].member.index(), settingRow(expected[i]).absent.index());
  }
}

TEST(VelkinSettingsTest, AnEmptyObjectIsADocumentWithNothingInIt) {
  EXPECT_EQ(decoded("{}"), VelkinSettings());
  EXPECT_EQ(encode(VelkinSettings()).value(), "{\n\n}");
}

TEST(VelkinSettingsTest, WritesWhatIsPresentInTheTablesOrder) {
  VelkinSettings settings;
  settings.searchKey = "a/b";
  settings.showToolBar = false;
  settings.webViewZoom = static_cast<double>(1.2F);
  settings.webViewHeight = 600;
  settings.lastVisibleWebView = 5;
  EXPECT_EQ(encode(settings).value(),
            "{\n"
            "  \"showToolBar\" : false,\n"
            "  \"webViewHeight\" : 600,\n"
            "  \"webViewZoom\" : 1.2000000476837158,\n"
            "  \"lastVisibleWebView\" : 5,\n"
            "  \"searchKey\" : \"a\\/b\"\n"
            "}");
  EXPECT_THAT(presentFields(settings),
              ElementsAre("showToolBar", "webViewHeight", "webViewZoom", "lastVisibleWebView", "searchKey"));
}

TEST(VelkinSettingsTest, ANullAndAnUnknownKeyLeaveTheirFieldsAbsent) {
  EXPECT_EQ(decoded(R"({"showToolBar": null, "colour": "red", "viewHeight": 980})"), VelkinSettings());
}

TEST(VelkinSettingsTest, AWholeNumberIsANumber) {
  EXPECT_EQ(decoded(R"({"webViewHeight": 600})").webViewHeight, 600.0);
  EXPECT_EQ(decoded(R"({"webViewHeight": -1})").webViewHeight, -1.0);
}

TEST(VelkinSettingsTest, AFractionIsNoWholeNumber) {
  EXPECT_EQ(decoded(R"({"lastVisibleWebView": 5.0})").lastVisibleWebView, 5);
  EXPECT_EQ(decoded(R"({"lastVisibleWebView": 1e2})").lastVisibleWebView, 100);
  EXPECT_THAT(failure(R"({"lastVisibleWebView": 5.5})"), HasSubstr("lastVisibleWebView"));
  EXPECT_THAT(failure(R"({"releaseNoteBuildVersion": 1e300})"), HasSubstr("a whole number"));
  EXPECT_THAT(failure(R"({"releaseNoteBuildVersion": 18446744073709551615})"), HasSubstr("a whole number"));
  EXPECT_EQ(decoded(R"({"releaseNoteBuildVersion": 9223372036854775807})").releaseNoteBuildVersion,
            std::numeric_limits<std::int64_t>::max());
}

TEST(VelkinSettingsTest, AnyWrongTypeInAnyFieldFailsTheWhole) {
  const std::vector<std::string> values = {"true", "\"text\"", "7", "7.5", "[]", "{}"};
  // By the type's place in the table: which of the values above it takes.
  const std::vector<std::vector<bool>> taken = {{true, false, false, false, false, false},
                                                {false, false, true, false, false, false},
                                                {false, false, true, true, false, false},
                                                {false, true, false, false, false, false}};
  for (const auto& field : velkinSettingsFields) {
    for (std::size_t i = 0; i < values.size(); ++i) {
      std::string text = R"({"stickyMenu": true, ")";
      text.append(keyOf(field)).append("\": ").append(values[i]).append("}");
      const auto settings = decodeVelkinSettings(text);
      EXPECT_EQ(settings.has_value(), taken[field.member.index()][i]) << text;
      if (settings) continue;
      EXPECT_THAT(settings.error(), HasSubstr(keyOf(field)));
    }
  }
}

TEST(VelkinSettingsTest, WhatIsNoDocumentSaysWhy) {
  for (const auto* text : {"", " ", "{", "{\"showToolBar\": tru}", "{} {}", "\xff", "{\"chatUrl\": \"\xff\"}",
                           "{\"webViewZoom\": 1e999}", "{\"webViewZoom\": NaN}"}) {
    EXPECT_EQ(failure(text), "it is not JSON") << text;
  }
  for (const auto* text : {"[]", "null", "3", "\"text\""})
    EXPECT_EQ(failure(text), "it is JSON, but no object");
}

TEST(VelkinSettingsTest, AByteOrderMarkIsPassedOver) {
  EXPECT_EQ(decoded("\xEF\xBB\xBF{\"stickyMenu\": true}").stickyMenu, true);
}

TEST(VelkinSettingsTest, TheLastOfTwoEqualKeysCounts) {
  EXPECT_EQ(decoded(R"({"stickyMenu": true, "stickyMenu": false})").stickyMenu, false);
}

TEST(VelkinSettingsTest, AnErrorNeverHoldsAValue) {
  EXPECT_THAT(failure(R"({"searchKey": ["secret"]})"), Not(HasSubstr("secret")));
  EXPECT_THAT(failure(R"({"searchKey": "secret)"), Not(HasSubstr("secret")));
}

TEST(VelkinSettingsTest, ManyBracketsAreJustAFailure) {
  constexpr std::size_t million = 1'000'000;
  EXPECT_EQ(failure(std::string(million, '[')), "it is not JSON");
  EXPECT_EQ(failure("{\"chatUrl\":" + std::string(million, '[') + std::string(million, ']') + "}"),
            "\"chatUrl\" is not a text");
}

class SettingsManagerTest : public testing::Test {
 protected:
  platform::HeadlessPlatform desktop;
  SettingsManager manager;
};

TEST_F(SettingsManagerTest, AnExportHoldsAllButEmptyGroups) {
  const auto settings = manager.getUserDefaultSettings();
  EXPECT_EQ(presentFields(settings).size(), 25U);
  EXPECT_FALSE(settings.sideBarGroup1);
  EXPECT_EQ(settings.chatUrl, "");
  EXPECT_EQ(settings.showToolBar, false) << "never stored and never registered";
  EXPECT_EQ(settings.webViewWidth, 600.0);
  EXPECT_EQ(settings.webViewZoom, 1.0);
}

TEST_F(SettingsManagerTest, AReadOfTheToolbarsFlagRegistersItsDefaultForTheExport) {
  EXPECT_TRUE(manager.defaults.showToolBar());
  EXPECT_EQ(manager.getUserDefaultSettings().showToolBar, true);
}

TEST_F(SettingsManagerTest, TheZoomHasTheNoiseOfItsRead) {
  manager.defaults.set(1.2, UserDefault::webViewZoom);
  EXPECT_EQ(manager.getUserDefaultSettings().webViewZoom, 1.2000000476837158);
}

TEST_F(SettingsManagerTest, GroupsAreCopiedUnseen) {
  manager.defaults.set("what ever", UserDefault::sideBarGroup3);
  EXPECT_EQ(manager.getUserDefaultSettings().sideBarGroup3, "what ever");
  VelkinSettings settings;
  settings.sideBarGroup2 = "odd";
  manager.setUserDefaultSettings(settings);
  EXPECT_EQ(manager.defaults.getString(UserDefault::sideBarGroup2), "odd");
}

TEST_F(SettingsManagerTest, AnImportChangesWhatIsPresentAndNothingElse) {
  manager.defaults.set("key", UserDefault::searchKey);
  manager.defaults.set("05-0", UserDefault::sideBarGroup2);
  const auto before = desktop.userDefaults.changedKeys().size();
  manager.setUserDefaultSettings(decoded(R"({"showToolBar": false})"));
  EXPECT_FALSE(manager.defaults.showToolBar());
  EXPECT_EQ(desktop.userDefaults.changedKeys().size(), before + 1);
  manager.setUserDefaultSettings(decoded(R"({"searchKey": ""})"));
  EXPECT_EQ(manager.defaults.getString(UserDefault::searchKey), "");
  EXPECT_EQ(manager.defaults.getString(UserDefault::sideBarGroup2), "05-0");
}

TEST_F(SettingsManagerTest, AnyStoreExportedAndImportedIntoAnEmptyOneIsTheSame) {
  std::mt19937 random(20'261'121);
  const auto chance = [&](int of) { return std::uniform_int_distribution(0, of - 1)(random) == 0; };
  for (int round = 0; round < 100; ++round) {
    platform::HeadlessPlatform one;
    const UserDefaultsHelper first;
    for (const auto& row : settingRows) {
      if (chance(3)) continue;
      switch (row.absent.index()) {
        case 0:
          first.set(chance(2), row.setting);
          break;
        case 1:
          first.set(std::int64_t{std::uniform_int_distribution(-5, 99)(random)}, row.setting);
          break;
        case 2:
          first.set(std::uniform_int_distribution(1, 4000)(random) / 8.0, row.setting);
          break;
        default:
          first.set("text " + std::to_string(random()) + " \"/\\ \n 🙂", row.setting);
      }
    }
    const auto exported = SettingsManager().getUserDefaultSettings();
    const auto text = encode(exported).value();
    platform::HeadlessPlatform two;
    SettingsManager().setUserDefaultSettings(decoded(text));
    EXPECT_EQ(SettingsManager().getUserDefaultSettings(), exported) << text;
    EXPECT_TRUE(UserDefaultsHelper().searchBarSearches().empty());
  }
}

}  // namespace
}  // namespace velkin
