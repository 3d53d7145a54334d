#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace platform {

class NSView;

/// A kind of file that can be chosen.
struct NSFileType {
  /// As the user reads it: "Web page, MHTML".
  std::string name;
  /// Without the dot.
  std::string extension;
  bool operator==(const NSFileType&) const = default;
};

/// Asks where to save. Main thread.
struct NSSavePanel {
  std::string title;
  /// Why; where the desktop's dialogue has no place for it, it isn't shown.
  std::string message;
  /// The proposed name, without a folder.
  std::string nameFieldStringValue;
  /// The first one is chosen at the beginning. A name without an extension gets that of the type.
  std::vector<NSFileType> allowedFileTypes;
  /// What is saved, as a word: each has its own folder that was chosen last. Empty: none is remembered.
  std::string use;

  struct Choice {
    /// Absolute.
    std::string path;
    /// The position in `allowedFileTypes`; 0 if there are none.
    std::size_t fileType = 0;
    bool operator==(const Choice&) const = default;
  };
  /// Nothing if the user cancels, or if the window goes. A file that is there already was asked about.
  using Completion = std::function<void(std::optional<Choice>)>;

  /// As `NSAlert::beginSheetModal`.
  void beginSheetModal(const NSView* view, Completion completion) const;

  /// What a path becomes that was chosen with a type: with its extension, unless it has one of the allowed
  /// ones.
  std::string withExtension(const std::string& path, std::size_t fileType) const;
};

/// Asks for a file. Main thread.
struct NSOpenPanel {
  std::string title;
  /// None: any file.
  std::vector<NSFileType> allowedFileTypes;
  /// As in `NSSavePanel`.
  std::string use;

  /// The absolute path; nothing if the user cancels, or if the window goes.
  using Completion = std::function<void(std::optional<std::string>)>;

  /// As `NSAlert::beginSheetModal`.
  void beginSheetModal(const NSView* view, Completion completion) const;
};

}  // namespace platform
