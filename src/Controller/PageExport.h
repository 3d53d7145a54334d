#pragma once

#include "Controller/PopoverContent.h"
#include "Platform/NSError.h"
#include "Platform/NSSavePanel.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <tl/expected.hpp>

namespace velkin {

/// Saves the page on show: as a PDF, or with all that it shows. One at a time; what fails is told in the
/// window and noted in the log. Main thread.
class PageExport {
 public:
  explicit PageExport(PopoverContent& content) : content_(content) {}

  /// Of the page's own HTML, as it stands two seconds after it was handed to a view of its own.
  void saveAsPdf();
  void saveAsWebArchive();
  /// Gives up what is under way; true if there was something.
  bool cancel();

  /// "Velkin", the suffix with its wrapper, and the date.
  static std::string getFileName(std::string_view suffix);

 private:
  struct Run {
    /// Of the page, to be printed.
    std::unique_ptr<platform::WKWebView> copy;
    /// The user has the save panel.
    bool isAsked = false;
  };
  using Token = std::weak_ptr<Run>;
  using Bytes = std::function<tl::expected<std::string, platform::NSError>(std::size_t fileType)>;

  /// Nothing if one is under way.
  std::shared_ptr<Run> begin();
  void end(const char* logLine, const std::string& why);
  void createPdf(const Token& token, const std::string& html);
  void ask(const Token& token, const platform::NSSavePanel& panel, const char* logLine, Bytes bytes);

  PopoverContent& content_;
  std::shared_ptr<Run> run_;
};

}  // namespace velkin
