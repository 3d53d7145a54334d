#pragma once

#include <optional>

namespace velkin {

/// What the key router asks of the controller. Main thread, inside the handling of a key.
class QKKeyboardShortcutHelperDelegate {
 public:
  virtual ~QKKeyboardShortcutHelperDelegate() = default;

  virtual bool isSearchBarOpen() const = 0;
  virtual void setIsSearchBarOpen(bool isOpen) = 0;
  /// `rawValue` of a view of the catalogue.
  virtual void switchWebViewsClicked(int rawValue) = 0;
  virtual void handlePopOverBehaviorUpdate(std::optional<bool> value) = 0;
  virtual void handlePrintAction() = 0;
  virtual void handleScreenCaptureAction() = 0;
  virtual void handleWindowFindOnPage() = 0;
  virtual void handleWindowBardOnPage() = 0;
  virtual void handleWindowBitBucketOnPage() = 0;
  virtual void handleWindowChatOnPage() = 0;
  virtual void handleWindowGitLabOnPage() = 0;
  virtual void handleWindowHemingwayOnPage() = 0;
  virtual void handleWindowJiraOnPage() = 0;
  virtual void handleWindowMarkdownOnPage() = 0;
  virtual void handleZoomActual() = 0;
  virtual void handleZoomIn() = 0;
  virtual void handleZoomOut() = 0;
  /// 1 to 4.
  virtual void handleSideGroupClick(int number) = 0;
  virtual void handleForward() = 0;
  virtual void handleBack() = 0;
  virtual void handleReloadFromOrigin() = 0;
  virtual void handleWindowFullScreen() = 0;
  virtual void handleWindowTaller() = 0;
  virtual void handleWindowShorter() = 0;
  virtual void handleWindowWider() = 0;
  virtual void handleWindowSlimmer() = 0;
  virtual void handlePageUp() = 0;
  virtual void handlePageDown() = 0;
  virtual void handleEnter() = 0;
  virtual void handleEsc() = 0;
};

}  // namespace velkin
