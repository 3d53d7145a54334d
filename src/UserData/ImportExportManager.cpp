#include "UserData/ImportExportManager.h"

#include "Platform/DebugLog.h"
#include "Platform/DispatchQueue.h"
#include "Platform/LogText.h"
#include "Platform/NSAlert.h"
#include "Platform/NSBundle.h"
#include "Platform/NSSavePanel.h"
#include "Platform/NSTemporaryDirectory.h"
#include "Platform/NSWorkspace.h"
#include "UserData/SettingsManager.h"
#include "UserData/VelkinSettingsJSON.h"
#include "extenstions/FileDescription.h"

#include <utility>

namespace velkin {

using platform::debugLog;
using platform::forLog;
using platform::NSAlert;

namespace {

constexpr const char* sourceFile = "ImportExportManager";
/// Each dialogue remembers the folder of both.
constexpr const char* dialogueUse = "settings";

void tell(const ImportExportManager::Failed& failed, const std::string& sentence) {
  if (failed) failed(sentence);
}

/// The text stays out: a program's log is kept, and the API key is in here.
void logRead(const JsonDocument& document) {
  debugLog("Q$: jsonString: a document of " + std::to_string(document.text.size()) + " bytes");
}

std::string namesOf(const VelkinSettings& settings) {
  std::string names;
  for (const auto name : presentFields(settings)) {
    if (!names.empty()) names += ", ";
    names += name;
  }
  return names.empty() ? "none" : names;
}

tl::expected<VelkinSettings, std::string> decode(const JsonDocument& document, const char* function) {
  auto settings = decodeVelkinSettings(document.text);
  if (!settings) {
    debugLog("Q$: Error decoding JSON data: " + forLog(settings.error()));
  } else {
    debugLog(sourceFile, function, "settings converted: " + namesOf(*settings));
  }
  return settings;
}

void save(const JsonDocument& document, const std::optional<platform::NSSavePanel::Choice>& choice,
          const ImportExportManager::Failed& failed) {
  if (!choice) return;
  const auto written = document.write(choice->path);
  debugLog(sourceFile, "exportToFile(_:)",
           written ? "Success: " + forLog(choice->path) : "Fail: " + forLog(written.error()));
  if (!written) tell(failed, "The settings can't be saved there: " + written.error() + ".");
}

}  // namespace

void ImportExportManager::exportClicked(const platform::NSView*, const VelkinSettings& settings) const {
  if (const auto path = writeTempFile(getFileName(), settings))
    platform::NSWorkspace::shared().activateFileViewerSelecting(*path);
}

void ImportExportManager::importClicked(const platform::NSView* view) const {
  debugLog(sourceFile, "importClicked(_:)", "");
  showDocumentPicker(view);
}

std::string ImportExportManager::getFileName() const {
  return platform::NSBundle::main().name.value_or("") + " (" + fileDescription(platform::now()) + ").json";
}

std::optional<std::string> ImportExportManager::writeTempFile(const std::string& name,
                                                              const VelkinSettings& settings) {
  const auto refuse = [](const std::string& why) {
    debugLog("Error encoding JSON: " + forLog(why));
    return std::nullopt;
  };
  const auto folder = platform::NSTemporaryDirectory();
  if (!folder) return refuse("there is no folder for it");
  auto text = encode(settings);
  if (!text) return refuse(text.error());
  const auto path = *folder + name;
  if (const auto written = JsonDocument{std::move(*text)}.write(path); !written)
    return refuse(written.error());
  return path;
}

std::optional<std::string> ImportExportManager::getTempFileURL() const {
  return writeTempFile(getFileName(), SettingsManager().getUserDefaultSettings());
}

std::optional<JsonDocument> ImportExportManager::getFileDocument(const std::string& url) const {
  auto document = JsonDocument::read(url);
  if (document) return std::move(*document);
  debugLog(document.error().isRead ? "Failed to decode file content."
                                   : "Error reading file: " + forLog(document.error().why));
  return std::nullopt;
}

void ImportExportManager::importJsonFrom(const std::string& url, const Action& action,
                                         const Failed& failed) const {
  const auto document = JsonDocument::read(url);
  if (!document) {
    debugLog("Q$: Error attempting import: " + forLog(document.error().why));
    return tell(failed, "The file can't be read: " + document.error().why + ". Nothing was changed.");
  }
  logRead(*document);
  const auto settings = decode(*document, "importJsonFrom(_:action:)");
  if (!settings)
    return tell(failed, "The file isn't a settings document: " + settings.error() + ". Nothing was changed.");
  if (action) action(*settings);
}

void ImportExportManager::showDocumentPicker(const platform::NSView* view) const {
  const platform::NSOpenPanel panel{.title = "Import Settings",
                                    .allowedFileTypes = JsonDocument::readableContentTypes(),
                                    .use = dialogueUse};
  panel.beginSheetModal(view, [self = *this, view](const std::optional<std::string>& path) {
    if (!path) return;
    const auto document = JsonDocument::read(*path);
    if (!document) {
      debugLog("Q$: Error attempting import: " + forLog(document.error().why));
      return;
    }
    logRead(*document);
    if (const auto settings = decode(*document, "showDocumentPicker(_:)"))
      self.presentImportDataDialog(view, *settings);
  });
}

void ImportExportManager::presentImportDataDialog(const platform::NSView* view,
                                                  const VelkinSettings& settings) const {
  constexpr std::size_t yes = 1;
  const NSAlert alert{
      .messageText = "Import Settings",
      .informativeText = "Found settings in file. Import them?",
      .buttons = {{"No", NSAlert::Button::Role::cancel}, {"Yes", NSAlert::Button::Role::confirm}}};
  alert.beginSheetModal(view, [settings](std::size_t button) {
    if (button == yes) SettingsManager().setUserDefaultSettings(settings);
  });
}

void ImportExportManager::exportToFile(const platform::NSView* view, Failed failed) const {
  const auto path = getTempFileURL();
  auto document = path ? getFileDocument(*path) : std::nullopt;
  if (!document) return tell(failed, "The settings can't be written to a file.");
  const platform::NSSavePanel panel{.title = "Export Settings",
                                    .message = "The file holds your API key in clear.",
                                    .nameFieldStringValue = getFileName(),
                                    .allowedFileTypes = JsonDocument::readableContentTypes(),
                                    .use = dialogueUse};
  panel.beginSheetModal(view, [document = std::move(*document), failed = std::move(failed)](
                                  const std::optional<platform::NSSavePanel::Choice>& choice) {
    save(document, choice, failed);
  });
}

void ImportExportManager::importFromFile(const platform::NSView* view, Failed failed) const {
  const platform::NSOpenPanel panel{.title = "Import Settings",
                                    .allowedFileTypes = JsonDocument::readableContentTypes(),
                                    .use = dialogueUse};
  panel.beginSheetModal(view, [self = *this, view,
                               failed = std::move(failed)](const std::optional<std::string>& jsonUrl) {
    if (!jsonUrl) return;
    debugLog(sourceFile, "importFromFile(_:)", "Success: " + forLog(*jsonUrl));
    constexpr std::size_t import = 1;
    const NSAlert alert{
        .messageText = "Import New Settings?",
        .informativeText = "Are you sure? This will replace your current settings.",
        .buttons = {{"Cancel", NSAlert::Button::Role::cancel}, {"Import", NSAlert::Button::Role::confirm}}};
    alert.beginSheetModal(view, [self, jsonUrl = *jsonUrl, failed](std::size_t button) {
      if (button != import) return;
      self.importJsonFrom(
          jsonUrl, [](const VelkinSettings& settings) { SettingsManager().setUserDefaultSettings(settings); },
          failed);
    });
  });
}

}  // namespace velkin
