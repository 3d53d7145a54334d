#pragma once

namespace velkin {

/// Saving the page on show. Main thread.
class PageExport {
 public:
  void saveAsPdf();
  void saveAsWebArchive();
};

}  // namespace velkin
