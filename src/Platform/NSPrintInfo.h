#pragma once

namespace platform {

/// How something is put on paper. Points.
struct NSPrintInfo {
  enum class Pagination { automatic, fit, clip };

  double leftMargin = 72;
  double rightMargin = 72;
  double topMargin = 72;
  double bottomMargin = 72;
  double scalingFactor = 1;
  Pagination horizontalPagination = Pagination::clip;
  Pagination verticalPagination = Pagination::automatic;
  bool isHorizontallyCentered = true;
  bool isVerticallyCentered = true;

  /// As it is where nobody asks for anything else.
  static NSPrintInfo shared() { return {}; }
};

}  // namespace platform
