#pragma once

#include "Controller/PopoverContent.h"
#include "Platform/Alive.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace velkin {

/// Paper, and pictures of the screen: ways out of the window to which no key leads. What fails is in the log.
/// Main thread.
class PagePrinting {
 public:
  explicit PagePrinting(PopoverContent& content) : content_(content) {}

  /// The page on show as a web archive, or nothing.
  void getWebArchive(std::function<void(std::optional<std::string>)> completion);
  /// The page on show by the print dialogue, once it could be read whole.
  void printWebViewFromArchive();
  /// The page as a PDF document, by the print dialogue.
  void printWebViewContent(platform::WKWebView& webView);
  /// The page on show twice, one print dialogue after the other, with narrow margins.
  void printUsingPdfCunctions();
  /// A picture of what the user chooses, by the desktop's own way of taking one.
  void captureScreen();

 private:
  void runPrintTasks(int left);

  PopoverContent& content_;
  platform::Alive isAlive_;
};

}  // namespace velkin
