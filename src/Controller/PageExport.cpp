#include "Controller/PageExport.h"

#include "Platform/DebugLog.h"
#include "Platform/DispatchQueue.h"
#include "Platform/LogText.h"
#include "Platform/Platform.h"
#include "Platform/WebArchive.h"
#include "Platform/WholeFile.h"
#include "extenstions/FileDescription.h"

#include <optional>
#include <utility>

#include <nlohmann/json.hpp>

namespace velkin {

using platform::debugLog;
using platform::NSError;
using Data = tl::expected<std::string, NSError>;

namespace {

/// In place of a load's end, which a page may put off for ever.
constexpr double layoutDelay = 2.0;
constexpr double noticeDelay = 1.0;
/// For a page that doesn't answer.
constexpr double patience = 60.0;
/// A document, and no secret: who may read it, the user's own settings say.
constexpr unsigned documentMode = 0666;

constexpr const char* pdfFailed = "Failed to create PDF: ";
constexpr const char* pdfNotSaved = "Encountered error during PDF save: ";
constexpr const char* archiveFailed = "Encountered error during webArchive: ";

}  // namespace

std::string PageExport::getFileName(std::string_view suffix) {
  std::string name = "VelkinOptional(\"";
  return name.append(suffix).append("\") (").append(fileDescription(platform::now())).append(")");
}

std::shared_ptr<PageExport::Run> PageExport::begin() {
  if (run_) return nullptr;
  run_ = std::make_shared<Run>();
  const Token token = run_;
  auto& queue = platform::DispatchQueue::main();
  queue.asyncAfter(noticeDelay, [token, popover = content_.popover] {
    if (!token.expired()) popover->showNotice("Saving the page… Escape cancels.");
  });
  return run_;
}

bool PageExport::cancel() { return std::exchange(run_, nullptr) != nullptr; }

void PageExport::end(const char* logLine, const std::string& why) {
  cancel();
  debugLog(logLine + platform::forLog(why));
  content_.popover->showNotice("The page could not be saved: " + why);
}

void PageExport::saveAsPdf() {
  debugLog("VelkinImpl", "handlePrintAction()", "");
  auto& source = content_.pageOnShow();
  const Token token = begin();
  if (token.expired()) return;
  platform::DispatchQueue::main().asyncAfter(patience, [this, token] {
    if (const auto run = token.lock(); run && !run->isAsked) end(pdfFailed, "The page does not answer.");
  });
  source.evaluateJavaScript(
      "document.documentElement.outerHTML",
      [this, token](const std::optional<std::string>& json, const std::optional<NSError>&) {
        if (token.expired()) return;
        const auto html = nlohmann::json::parse(json.value_or(""), nullptr, false);
        if (!html.is_string()) {
          cancel();
          return;
        }
        createPdf(token, html.get_ref<const std::string&>());
      });
}

void PageExport::createPdf(const Token& token, const std::string& html) {
  const auto run = token.lock();
  run->copy = platform::WKWebView::make({}, {});
  run->copy->loadHTMLString(html, std::nullopt);
  platform::DispatchQueue::main().asyncAfter(layoutDelay, [this, token] {
    const auto laidOut = token.lock();
    if (!laidOut) return;
    laidOut->copy->createPDF({}, [this, token](Data pdf) {
      if (token.expired()) return;
      if (!pdf) return end(pdfFailed, pdf.error().localizedDescription);
      ask(token,
          {.title = "Choose Output Location",
           .message = "Choose a location to save the PDF",
           .nameFieldStringValue = getFileName("-PDF"),
           .allowedFileTypes = {{"PDF document", "pdf"}},
           .use = "page"},
          pdfNotSaved, [pdf = *std::move(pdf)](std::size_t) -> Data { return pdf; });
    });
  });
}

void PageExport::saveAsWebArchive() {
  debugLog("VelkinImpl", "handleScreenCaptureAction()", "");
  auto& source = content_.pageOnShow();
  const Token token = begin();
  if (token.expired()) return;
  platform::DispatchQueue::main().asyncAfter(patience, [this, token] {
    if (const auto run = token.lock(); run && !run->isAsked) end(archiveFailed, "The page does not answer.");
  });
  source.createMHTMLData([this, token](Data mhtml) {
    if (token.expired()) return;
    if (!mhtml) return end(archiveFailed, mhtml.error().localizedDescription);
    ask(token,
        {.title = "Choose Output Location",
         .message = "Choose a location to save the web archive",
         .nameFieldStringValue = getFileName(""),
         .allowedFileTypes = {{"Web archive", "webarchive"}, {"Web page, MHTML", "mhtml"}},
         .use = "page"},
        archiveFailed, [mhtml = *std::move(mhtml)](std::size_t fileType) -> Data {
          if (fileType == 1) return mhtml;
          auto archive = platform::webArchiveFromMHTML(mhtml);
          if (archive) return *std::move(archive);
          return tl::unexpected(NSError{"WebKitErrorDomain", 1, "The page has no content."});
        });
  });
}

void PageExport::ask(const Token& token, const platform::NSSavePanel& panel, const char* logLine,
                     Bytes bytes) {
  if (const auto run = token.lock()) run->isAsked = true;
  const auto* view = &content_.popover->contentViewController()->view();
  panel.beginSheetModal(view, [this, token, logLine, bytes = std::move(bytes)](const auto& choice) {
    if (token.expired()) return;
    if (!choice) {
      cancel();
      return;
    }
    const auto data = bytes(choice->fileType);
    if (!data) return end(logLine, data.error().localizedDescription);
    const auto written = platform::replaceFile(choice->path, *data, documentMode);
    if (!written) return end(logLine, written.error().why);
    cancel();
  });
}

}  // namespace velkin
