#pragma once

#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "SearchBar/AnswerPage.h"

#include <memory>
#include <string>

namespace velkin {

/// The answer, or how to get a key as long as there is none.
struct SearchResultTextUIView {
  double resultFontSize = platform::preferredPointSize(platform::Font::title3);
  double resultRowCountLimit = 24;
  std::string isMissingApiKeyString = "\n1. Click \"Get Key\".\n2. Paste key above.\n3. Click \"Save Key\".";
  platform::Binding<bool> useSmallerHeight;
  platform::Binding<bool> isMissingApiKey;
  platform::Binding<std::string> resultHtml;
  platform::State<double> zoomSize{1};
  std::shared_ptr<AnswerPage> page;

  platform::View body() const;
  /// Points.
  double getHeight() const;

 private:
  platform::View getMissingApiKeyTextField() const;
  platform::View markdownTextView() const;
};

}  // namespace velkin
