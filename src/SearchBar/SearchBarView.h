#pragma once

#include "Components/IconSize.h"
#include "Helpers/SearchRequestHelper.h"
#include "Helpers/UserDefaultsHelper.h"
#include "MarkdownEngine/MarkdownParser.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "SearchBar/AnswerPage.h"
#include "Values/AppearanceWidth.h"
#include "Values/SearchBarSearch.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velkin {

/// The content of the floating panel: a prompt in one line, and the answer below it. A new one is made each
/// time the panel opens.
struct SearchBarView {
  /// A sample answer, for a look at the view without a service.
  static constexpr std::string_view chatText =
      "I am ChatGPT, a large language model created by OpenAI. I can answer questions, explain how things "
      "work, draft and polish text, translate between languages, and help with code in many of them. Give "
      "me a prompt in plain words; the more of its background you tell, the better the answer fits.\n\n"
      "- Ask for a **list**, a table or a few lines of `code`.\n"
      "- Ask again with other words if the answer misses the point.\n"
      "- Check what matters: I can be wrong, and I know nothing of what happened after my training.\n\n"
      "Your recent prompts and their answers stay at hand in the menu on the left.";

  UserDefaultsHelper defaults;
  platform::State<std::shared_ptr<const markdown::MarkdownParser>> parser{makeParser()};
  double searchBarHeight = 64;
  double width = searchBarSize(AppearanceWidth::medium);
  IconSize iconSize = IconSize::small;
  double fontSize = platform::preferredPointSize(platform::Font::title);
  platform::State<bool> showResetKeyView{false};
  /// In reserve; the icon counts its taps itself.
  platform::State<int> tapCounter{0};
  platform::State<bool> useSmallerHeight{false};
  platform::State<std::string> text;
  /// The prompt whose answer is on view.
  platform::State<std::string> searchedText;
  /// HTML of the answer, or the text of an error.
  platform::State<std::string> resultHtml;
  platform::State<bool> isMissingApiKey{isKeyMissing()};
  platform::State<bool> isPrompting{false};
  platform::State<bool> isTextFieldDisabled{false};
  platform::State<bool> isTextEmpty{true};
  platform::State<std::vector<SearchBarSearch>> searches;
  /// How long the prompt is of which the field could not hold the end, in bytes; 0 while all of it is there.
  platform::State<std::size_t> cutLength{0};
  std::shared_ptr<AnswerPage> page = std::make_shared<AnswerPage>();

  platform::View body() const;

  void recentSearchClicked(const SearchBarSearch& search) const;
  void setApiKey() const;
  void completeChatQuery() const;
  void handleTextChange(const std::string& newText) const;
  void didSetApiKey(bool isApiKeySet) const;
  void handleCut() const;

  /// The key slot is empty, or holds the default of its row among the editable addresses.
  static bool isKeyMissing();

 private:
  static std::shared_ptr<const markdown::MarkdownParser> makeParser();
  /// What has changed below the prompt, in words.
  std::string news() const;
  platform::View searchRow() const;
  platform::View buttonRow() const;
  platform::View result() const;
};

}  // namespace velkin
