#pragma once

#include "Components/MarkdownWebViewController.h"
#include "Platform/WKWebView.h"

#include <memory>
#include <string>

namespace velkin {

/// A page with a sample of text, in the process of `pool`. Main thread.
class ZoomedTextWebViewController : public MarkdownWebViewController {
 public:
  explicit ZoomedTextWebViewController(std::shared_ptr<platform::WKProcessPool> pool);

  /// What an answer looks like.
  static std::string samplePage();
};

}  // namespace velkin
