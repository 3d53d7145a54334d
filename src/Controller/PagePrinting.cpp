#include "Controller/PagePrinting.h"

#include "Helpers/ScreenCaptureHelper.h"
#include "Platform/DebugLog.h"
#include "Platform/LogText.h"
#include "Platform/SystemServices.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace velkin {

using platform::debugLog;
using platform::NSError;
using platform::NSPrintInfo;
using Data = tl::expected<std::string, NSError>;

namespace {

constexpr const char* ownerName = "Velkin";
constexpr int printTasks = 2;
constexpr double narrowMargin = 10;

void noteArchiveFailure(const NSError& error) {
  debugLog("Encountered error during webArchive: " + platform::forLog(error.localizedDescription));
}

void notePdfFailure(const NSError& error) {
  debugLog("Failed to create PDF: " + platform::forLog(error.localizedDescription));
}

NSPrintInfo narrowPrintInfo() {
  auto info = NSPrintInfo::shared();
  info.horizontalPagination = NSPrintInfo::Pagination::automatic;
  info.verticalPagination = NSPrintInfo::Pagination::automatic;
  info.isHorizontallyCentered = true;
  info.isVerticallyCentered = true;
  info.leftMargin = info.rightMargin = info.topMargin = info.bottomMargin = narrowMargin;
  info.scalingFactor = 1;
  return info;
}

}  // namespace

void PagePrinting::getWebArchive(std::function<void(std::optional<std::string>)> completion) {
  content_.pageOnShow().createWebArchiveData([completion = std::move(completion)](Data archive) {
    completion(archive ? std::optional(*std::move(archive)) : std::nullopt);
  });
}

void PagePrinting::printWebViewFromArchive() {
  auto& page = content_.pageOnShow();
  // The completion doesn't outlive the page.
  page.createWebArchiveData([this, alive = isAlive_.watch(), &page](const Data& archive) {
    if (!alive) return;
    if (!archive) return noteArchiveFailure(archive.error());
    printWebViewContent(page);
  });
}

void PagePrinting::printWebViewContent(platform::WKWebView& webView) {
  webView.createPDF({}, [](const Data& pdf) {
    if (!pdf) return notePdfFailure(pdf.error());
    platform::SystemServices::shared().printDocument(*pdf, NSPrintInfo::shared(), [](const auto& error) {
      if (error) debugLog("Printing failed: " + platform::forLog(error->localizedDescription));
    });
  });
}

void PagePrinting::printUsingPdfCunctions() {
  const auto bounds = content_.pageOnShow().frame().size;
  std::ostringstream text;
  text << "wkBounds " << bounds.width << " x " << bounds.height;
  debugLog("VelkinImpl", "printUsingPdfCunctions()", text.str());
  runPrintTasks(printTasks);
}

void PagePrinting::runPrintTasks(int left) {
  if (left == 0) return;
  content_.pageOnShow().printOperation(narrowPrintInfo(), [this, alive = isAlive_.watch(), left] {
    if (alive) runPrintTasks(left - 1);
  });
}

void PagePrinting::captureScreen() {
  ScreenCaptureHelper helper;
  const auto windows = platform::CGWindowListCopyWindowInfo();
  const auto ours = std::ranges::find(windows, ownerName, &platform::CGWindow::ownerName);
  std::string number = "none";
  if (ours != windows.end()) {
    platform::SystemServices::shared().activate(ours->ownerPID);
    if (ours->number) number = std::to_string(*ours->number);
  }
  debugLog("VelkinImpl", "captureScreen()", "winId " + number);
  helper.captureScreen(std::nullopt);
}

}  // namespace velkin
