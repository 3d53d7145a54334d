#pragma once

#include "UserData/JsonDocument.h"
#include "UserData/VelkinSettings.h"

#include <functional>
#include <optional>
#include <string>

namespace platform {
class NSView;
}

namespace velkin {

/// Takes the settings into a file and out of one. Paths are absolute. Has no state of its own; what goes
/// wrong is logged, without anything of a document's text, and changes no setting. Main thread.
class ImportExportManager {
 public:
  /// Told what went wrong, in a sentence for the page that asked.
  using Failed = std::function<void(const std::string& sentence)>;
  using Action = std::function<void(const VelkinSettings&)>;

  virtual ~ImportExportManager() = default;

  /// Writes `settings` to a file of its own and shows it in the file manager, to be passed on from there.
  virtual void exportClicked(const platform::NSView* view, const VelkinSettings& settings) const;
  virtual void importClicked(const platform::NSView* view) const;
  /// "Velkin (11-15-26_1306).json", with the present local time.
  virtual std::string getFileName() const;
  /// A new file with the present settings, for their owner only. It stays there.
  virtual std::optional<std::string> getTempFileURL() const;
  virtual std::optional<JsonDocument> getFileDocument(const std::string& url) const;
  /// Reads the file as it is now. `action` runs before this returns, if it is a settings document.
  virtual void importJsonFrom(const std::string& url, const Action& action, const Failed& failed = {}) const;
  /// Asks for a file, reads it, and asks whether it is to be imported.
  virtual void showDocumentPicker(const platform::NSView* view) const;
  virtual void presentImportDataDialog(const platform::NSView* view, const VelkinSettings& settings) const;

  // What stands behind the buttons "Export" and "Import" of a page, from the dialogue to the end.

  /// Asks where to, and writes the present settings there.
  void exportToFile(const platform::NSView* view, Failed failed = {}) const;
  /// Asks for a file and whether it may replace the present settings, and then reads and stores it.
  void importFromFile(const platform::NSView* view, Failed failed = {}) const;

 private:
  /// As it was at the time of the name.
  static std::optional<std::string> writeTempFile(const std::string& name, const VelkinSettings& settings);
};

}  // namespace velkin
