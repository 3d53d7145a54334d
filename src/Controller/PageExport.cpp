#include "Controller/PageExport.h"

#include "Platform/DebugLog.h"

namespace velkin {

void PageExport::saveAsPdf() { platform::debugLog("VelkinImpl", "handlePrintAction()", ""); }

void PageExport::saveAsWebArchive() { platform::debugLog("VelkinImpl", "handleScreenCaptureAction()", ""); }

}  // namespace velkin
