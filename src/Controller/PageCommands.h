#pragma once

#include "Controller/PopoverContent.h"

namespace velkin {

/// What keys, menu and toolbar do to the page in the main place. Main thread.
class PageCommands {
 public:
  explicit PageCommands(PopoverContent& content) : content_(content) {}

  void goBack() { content_.currentWebView.webView->goBack(); }
  void goForward() { content_.currentWebView.webView->goForward(); }
  void scrollPageUp();
  void scrollPageDown();
  /// Sends the form that is being filled in.
  void submitForm() { content_.scripting->submitForm(content_.currentWebView.webView); }
  void reload();
  /// To the view's configured address, wherever the user went from there.
  void reloadFromOrigin();
  void openInBrowser();

 private:
  PopoverContent& content_;
  UserDefaultsHelper defaults_;
};

}  // namespace velkin
