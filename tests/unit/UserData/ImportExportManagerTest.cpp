#include "Platform/DebugLog.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/NSTemporaryDirectory.h"
#include "UserData/ImportExportManager.h"
#include "UserData/SettingsManager.h"
#include "UserData/VelkinSettingsJSON.h"
#include "unit/TemporaryFolder.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velkin {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

/// For a while nobody of note: the administrator may read and write everything.
class Nobody {
 public:
  Nobody() : isNeeded_(geteuid() == 0) {
    constexpr uid_t nobody = 65534;
    if (isNeeded_) {
      EXPECT_EQ(seteuid(nobody), 0);
    }
  }
  ~Nobody() {
    if (isNeeded_) {
      EXPECT_EQ(seteuid(0), 0);
    }
  }
  Nobody(const Nobody&) = delete;
  Nobody& operator=(const Nobody&) = delete;

 private:
  bool isNeeded_;
};

/// A disk that is full: a file of this process may hold no more than `bytes`.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) {
    EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &before_), 0);
    const rlimit limit{bytes, before_.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  ~FullDisk() { EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &before_), 0); }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit before_{};
};

class ImportExportManagerTest : public testing::Test {
 protected:
  ImportExportManagerTest() {
    setenv("XDG_RUNTIME_DIR", runtime.path().c_str(), 1);
    setenv("TZ", "UTC", 1);
    tzset();
    platform::setDebugLogSink([this](std::string_view line) { log.append(line).append("\n"); });
  }
  ~ImportExportManagerTest() override {
    platform::setDebugLogSink({});
    unsetenv("XDG_RUNTIME_DIR");
    unsetenv("TZ");
    tzset();
  }

  static mode_t modeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status.st_mode & 0777U;
  }
  std::string file(std::string_view contents) {
    auto path = (files.path() / "settings.json").string();
    writeFile(path, contents);
    return path;
  }
  /// How often the action ran.
  int imports(const std::string& path) {
    int count = 0;
    manager.importJsonFrom(
        path, [&](const VelkinSettings&) { ++count; },
        [this](const std::string& sentence) { told.push_back(sentence); });
    return count;
  }
  ImportExportManager::Failed teller() {
    return [this](const std::string& sentence) { told.push_back(sentence); };
  }

  TemporaryFolder runtime;
  TemporaryFolder files;
  platform::HeadlessPlatform desktop;
  UserDefaultsHelper defaults;
  ImportExportManager manager;
  std::string log;
  std::vector<std::string> told;
};

TEST_F(ImportExportManagerTest, TheFilesNameHoldsTheBundlesNameAndTheDate) {
  // 15 November 2026, 13:06.
  desktop.queue.advance(1'794'747'960 - desktop.now());
  EXPECT_EQ(manager.getFileName(), "Velkin (11-15-26_1306).json");
  desktop.bundle.name.reset();
  EXPECT_EQ(manager.getFileName(), " (11-15-26_1306).json");
}

TEST_F(ImportExportManagerTest, ATemporaryFileIsForItsOwnerOnly) {
  defaults.set("sk-secret", UserDefault::searchKey);
  const auto path = manager.getTempFileURL();
  ASSERT_TRUE(path);
  EXPECT_EQ(*path, (runtime.path() / "velkin" / manager.getFileName()).string());
  EXPECT_EQ(modeOf(*path), 0600U);
  EXPECT_EQ(modeOf(std::filesystem::path(*path).parent_path()), 0700U);
  const auto document = manager.getFileDocument(*path);
  ASSERT_TRUE(document);
  EXPECT_EQ(document->text, encode(SettingsManager().getUserDefaultSettings()).value());
  EXPECT_THAT(document->text, HasSubstr("\"searchKey\" : \"sk-secret\""));
  EXPECT_THAT(document->text, Not(HasSubstr("sideBarGroup1")));
  EXPECT_THAT(document->text, HasSubstr("\"chatUrl\" : \"\""));
}

TEST_F(ImportExportManagerTest, ASecondExportInTheSameMinuteOverwritesTheFirst) {
  const auto first = manager.getTempFileURL();
  defaults.set("later", UserDefault::markdownString);
  EXPECT_EQ(manager.getTempFileURL(), first);
  EXPECT_THAT(contentsOf(*first), HasSubstr("later"));
}

TEST_F(ImportExportManagerTest, AFolderThatSomebodyElseLaidThereIsNotTrusted) {
  std::filesystem::create_directory_symlink(files.path(), runtime.path() / "velkin");
  EXPECT_FALSE(manager.getTempFileURL());
  EXPECT_THAT(log, HasSubstr("Error encoding JSON: "));
}

TEST_F(ImportExportManagerTest, AFolderThatWasOpenToOthersIsClosed) {
  std::filesystem::create_directory(runtime.path() / "velkin");
  std::filesystem::permissions(runtime.path() / "velkin", std::filesystem::perms::all);
  EXPECT_TRUE(platform::NSTemporaryDirectory());
  EXPECT_EQ(modeOf(runtime.path() / "velkin"), 0700U);
}

TEST_F(ImportExportManagerTest, ADocumentIsReadAsUTF8OrNotAtAll) {
  EXPECT_EQ(manager.getFileDocument(file("{}"))->text, "{}");
  EXPECT_FALSE(manager.getFileDocument(file("\xff")));
  EXPECT_THAT(log, HasSubstr("Failed to decode file content."));
  EXPECT_FALSE(manager.getFileDocument("/nowhere/at/all"));
  EXPECT_THAT(log, HasSubstr("Error reading file: "));
}

TEST_F(ImportExportManagerTest, AGoodFileReachesTheActionOnce) {
  EXPECT_EQ(imports(file(R"({"searchKey": "sk-secret", "showToolBar": false})")), 1);
  EXPECT_TRUE(told.empty());
  EXPECT_THAT(log, HasSubstr("Q$: jsonString: a document of 48 bytes"));
  EXPECT_THAT(log, HasSubstr(" settings converted: showToolBar, searchKey"));
}

TEST_F(ImportExportManagerTest, NothingOfADocumentIsLogged) {
  imports(file(R"({"searchKey": "sk-secret"})"));
  imports(file(R"({"searchKey": "sk-secret", "webViewZoom": "sk-secret"})"));
  imports(file(R"({"searchKey": "sk-secret)"));
  EXPECT_THAT(log, Not(HasSubstr("sk-secret")));
}

TEST_F(ImportExportManagerTest, WhatIsNoDocumentChangesNothingAndSaysWhy) {
  EXPECT_EQ(imports(file("no JSON")), 0);
  EXPECT_EQ(told.back(), "The file isn't a settings document: it is not JSON. Nothing was changed.");
  EXPECT_THAT(log, HasSubstr("Q$: Error decoding JSON data: it is not JSON"));
  EXPECT_EQ(imports(file(R"({"webViewZoom": "1.2"})")), 0);
  EXPECT_EQ(told.back(),
            "The file isn't a settings document: \"webViewZoom\" is not a number. Nothing was changed.");
  EXPECT_EQ(imports(file("{\"chatUrl\": \"\xff\"}")), 0);
  EXPECT_THAT(log, HasSubstr("Q$: Error attempting import: it is not UTF-8"));
}

TEST_F(ImportExportManagerTest, WhatIsNoFileIsNeverWaitedFor) {
  const auto pipe = (files.path() / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const auto& path : {pipe, files.path().string(), std::string("/nowhere"), std::string("/dev/zero")}) {
    EXPECT_EQ(imports(path), 0) << path;
    EXPECT_THAT(told.back(), EndsWith("Nothing was changed.")) << path;
  }
}

TEST_F(ImportExportManagerTest, AFileThatIsFarTooLargeIsRefused) {
  const auto path = file("");
  std::filesystem::resize_file(path, std::uintmax_t{1} << 30U);
  EXPECT_EQ(imports(path), 0);
  EXPECT_THAT(told.back(), HasSubstr("far too large"));
}

TEST_F(ImportExportManagerTest, AFileThatMayNotBeReadChangesNothing) {
  const auto path = file(R"({"chatUrl": "new"})");
  std::filesystem::permissions(path, std::filesystem::perms::none);
  {
    const Nobody nobody;
    EXPECT_EQ(imports(path), 0);
  }
  ASSERT_EQ(told.size(), 1U);
  EXPECT_EQ(told.back(),
            "The file can't be read: it can't be opened: Permission denied. Nothing was changed.");
}

TEST_F(ImportExportManagerTest, AFolderThatMayNotBeWrittenIsNamedAsTheReason) {
  manager.exportToFile(nullptr, teller());
  const auto folder = files.path() / "read-only";
  std::filesystem::create_directory(folder);
  std::filesystem::permissions(folder, std::filesystem::perms(0555));
  {
    const Nobody nobody;
    desktop.openDialogs.save(platform::NSSavePanel::Choice{(folder / "settings.json").string()});
    desktop.queue.drain();
  }
  ASSERT_EQ(told.size(), 1U);
  EXPECT_EQ(told.back(),
            "The settings can't be saved there: a new file can't be made in its folder: Permission denied.");
  EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(ImportExportManagerTest, AFullDiskLeavesTheOldFileWholeAndNothingElse) {
  const auto path = file("what was there before");
  manager.exportToFile(nullptr, teller());
  {
    const FullDisk disk(100);
    desktop.openDialogs.save(platform::NSSavePanel::Choice{path});
    desktop.queue.drain();
  }
  ASSERT_EQ(told.size(), 1U);
  EXPECT_THAT(told.back(), HasSubstr("the new file can't be written"));
  EXPECT_EQ(contentsOf(path), "what was there before");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(files.path()), {}), 1);
}

TEST_F(ImportExportManagerTest, ANameWithASlashIsAFolderThatIsNotThere) {
  manager.exportToFile(nullptr, teller());
  desktop.openDialogs.save(platform::NSSavePanel::Choice{(files.path() / "a/b.json").string()});
  desktop.queue.drain();
  ASSERT_EQ(told.size(), 1U);
  EXPECT_THAT(told.back(), HasSubstr("No such file or directory"));
  EXPECT_TRUE(std::filesystem::is_empty(files.path()));
}

TEST_F(ImportExportManagerTest, AFolderThatWasChosenIsNoDocument) {
  for (const bool isImported : {true, false}) {
    told.clear();
    if (isImported) {
      manager.importFromFile(nullptr, teller());
      desktop.openDialogs.open(files.path().string());
      desktop.queue.drain();
      desktop.openDialogs.press("Import");
    } else {
      manager.exportToFile(nullptr, teller());
      desktop.openDialogs.save(platform::NSSavePanel::Choice{files.path().string()});
    }
    desktop.queue.drain();
    EXPECT_EQ(told.size(), 1U) << isImported;
    EXPECT_TRUE(std::filesystem::is_directory(files.path()));
  }
}

TEST_F(ImportExportManagerTest, ALastViewThatDoesNotExistIsTakenAndReadsAsTheFirst) {
  manager.importJsonFrom(file(R"({"lastVisibleWebView": 99})"), [](const VelkinSettings& settings) {
    SettingsManager().setUserDefaultSettings(settings);
  });
  EXPECT_EQ(defaults.getInt(UserDefault::lastVisibleWebView), 99);
  EXPECT_EQ(defaults.lastVisibleWebView(), WebViewSwitchType::chatgpt);
}

TEST_F(ImportExportManagerTest, ExportAsksWhereToAndWritesForTheOwnerOnly) {
  manager.exportToFile(nullptr, teller());
  ASSERT_EQ(desktop.openDialogs.savePanels.size(), 1U);
  const auto& panel = desktop.openDialogs.savePanels.back().asked;
  EXPECT_EQ(panel.nameFieldStringValue, manager.getFileName());
  EXPECT_EQ(panel.allowedFileTypes, JsonDocument::readableContentTypes());
  const auto path = file("what was there before");
  desktop.openDialogs.save(platform::NSSavePanel::Choice{path});
  desktop.queue.drain();
  EXPECT_EQ(contentsOf(path), encode(SettingsManager().getUserDefaultSettings()).value());
  EXPECT_EQ(modeOf(path), 0600U);
  EXPECT_TRUE(told.empty());
}

TEST_F(ImportExportManagerTest, AFailedExportLeavesWhatWasThereAndSaysWhy) {
  manager.exportToFile(nullptr, teller());
  desktop.openDialogs.save(platform::NSSavePanel::Choice{(files.path() / std::string(300, 'x')).string()});
  desktop.queue.drain();
  ASSERT_EQ(told.size(), 1U);
  EXPECT_THAT(told.back(), HasSubstr("The settings can't be saved there: "));
  manager.exportToFile(nullptr, teller());
  desktop.openDialogs.save(platform::NSSavePanel::Choice{"/nowhere/at/all/settings.json"});
  desktop.queue.drain();
  EXPECT_EQ(told.size(), 2U);
  EXPECT_THAT(log, HasSubstr(" Fail: "));
}

TEST_F(ImportExportManagerTest, ImportAsksFirstAndReadsTheFileAsItIsWhenItIsConfirmed) {
  const auto path = file(R"({"chatUrl": "before"})");
  manager.importFromFile(nullptr, teller());
  desktop.openDialogs.open(path);
  desktop.queue.drain();
  ASSERT_EQ(desktop.openDialogs.alerts.size(), 1U);
  const auto& alert = desktop.openDialogs.alerts.back().asked;
  EXPECT_EQ(alert.messageText, "Import New Settings?");
  EXPECT_EQ(alert.informativeText, "Are you sure? This will replace your current settings.");
  file(R"({"chatUrl": "after"})");
  EXPECT_TRUE(desktop.openDialogs.press("Import"));
  desktop.queue.drain();
  EXPECT_EQ(defaults.getString(UserDefault::chatUrl), "after");
}

TEST_F(ImportExportManagerTest, CancellingAnywhereChangesNothing) {
  const auto path = file(R"({"chatUrl": "new"})");
  manager.importFromFile(nullptr, teller());
  desktop.openDialogs.open(std::nullopt);
  desktop.queue.drain();
  EXPECT_TRUE(desktop.openDialogs.alerts.empty());
  manager.importFromFile(nullptr, teller());
  desktop.openDialogs.open(path);
  desktop.queue.drain();
  EXPECT_TRUE(desktop.openDialogs.pressEscape());
  desktop.queue.drain();
  EXPECT_EQ(defaults.getString(UserDefault::chatUrl), "");
  EXPECT_TRUE(told.empty());
}

TEST_F(ImportExportManagerTest, AFileThatGoesBeforeItIsConfirmedChangesNothing) {
  const auto path = file(R"({"chatUrl": "new"})");
  manager.importFromFile(nullptr, teller());
  desktop.openDialogs.open(path);
  desktop.queue.drain();
  std::filesystem::remove(path);
  desktop.openDialogs.press("Import");
  desktop.queue.drain();
  ASSERT_EQ(told.size(), 1U);
  EXPECT_THAT(told.back(), HasSubstr("The file can't be read: "));
}

TEST_F(ImportExportManagerTest, TheSecondRouteImportsWhatWasReadBeforeTheQuestion) {
  const auto path = file(R"({"chatUrl": "before"})");
  manager.importClicked(nullptr);
  desktop.openDialogs.open(path);
  desktop.queue.drain();
  ASSERT_EQ(desktop.openDialogs.alerts.size(), 1U);
  const auto& alert = desktop.openDialogs.alerts.back().asked;
  EXPECT_EQ(alert.messageText, "Import Settings");
  EXPECT_EQ(alert.informativeText, "Found settings in file. Import them?");
  ASSERT_EQ(alert.buttons.size(), 2U);
  EXPECT_EQ(alert.buttons[0].title, "No");
  file(R"({"chatUrl": "after"})");
  EXPECT_TRUE(desktop.openDialogs.press("Yes"));
  desktop.queue.drain();
  EXPECT_EQ(defaults.getString(UserDefault::chatUrl), "before");
}

TEST_F(ImportExportManagerTest, TheSecondRouteAsksNothingForWhatIsNoDocument) {
  manager.importClicked(nullptr);
  desktop.openDialogs.open(file("[]"));
  desktop.queue.drain();
  EXPECT_TRUE(desktop.openDialogs.alerts.empty());
  manager.presentImportDataDialog(nullptr, {.chatUrl = "new"});
  desktop.openDialogs.press("No");
  desktop.queue.drain();
  EXPECT_EQ(defaults.getString(UserDefault::chatUrl), "");
}

TEST_F(ImportExportManagerTest, TheSecondRouteShowsItsExportInTheFileManager) {
  manager.exportClicked(nullptr, {.chatUrl = "only this"});
  ASSERT_EQ(desktop.workspace.revealed.size(), 1U);
  EXPECT_EQ(decodeVelkinSettings(contentsOf(desktop.workspace.revealed.back())).value(),
            VelkinSettings{.chatUrl = "only this"});
}

TEST_F(ImportExportManagerTest, AnEmptyKeyInADocumentClearsTheStoredOne) {
  defaults.set("sk-secret", UserDefault::searchKey);
  defaults.set("05-0", UserDefault::sideBarGroup2);
  manager.importJsonFrom(file(R"({"searchKey": ""})"), [](const VelkinSettings& settings) {
    SettingsManager().setUserDefaultSettings(settings);
  });
  EXPECT_EQ(defaults.getString(UserDefault::searchKey), "");
  EXPECT_EQ(defaults.getString(UserDefault::sideBarGroup2), "05-0");
}

}  // namespace
}  // namespace velkin
