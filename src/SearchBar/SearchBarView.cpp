#include "SearchBar/SearchBarView.h"

#include "Components/AppIconUIView.h"
#include "Components/MarkdownHtmlHelper.h"
#include "Platform/DebugLog.h"
#include "Platform/DispatchQueue.h"
#include "SearchBar/SearchBarRecentsUIView.h"
#include "SearchBar/SearchButtonRowUIView.h"
#include "SearchBar/SearchResultTextUIView.h"
#include "SearchBar/SearchTextFieldUIView.h"
#include "Values/SearchBarSearches.h"
#include "Values/WebViewSwitchType.h"

#include <utility>

namespace velkin {

using namespace platform;

namespace {

/// How long the view is blank before an earlier answer stands there.
constexpr double recallDelay = 0.5;
constexpr double progressHeight = 100;
constexpr double sidePadding = 8;

/// What a completion needs when it comes. It may find the panel closed and everything else of it gone, and it
/// runs on the URL session's thread: so it holds values that belong to no window.
struct PendingSearch {
  std::string prompt;
  UserDefaultsHelper defaults;
  std::shared_ptr<const markdown::MarkdownParser> parser;
  State<bool> isPrompting;
  State<std::string> resultHtml;
  State<std::string> searchedText;
  State<std::vector<SearchBarSearch>> searches;

  void complete(const SearchRequestHelper::Result& result) const {
    if (!result) {
      isPrompting.set(false);
      resultHtml.set("Could not complete request.:-( \nError:" + description(result.error()));
      return;
    }
    const auto html = parser->html(*result);
    isPrompting.set(false);
    resultHtml.set(html);
    searchedText.set(prompt);
    // As it is stored now: another panel may have added to it while this request ran.
    auto history = defaults.getSearchBarSearches();
    if (!addSearch(history, prompt, html)) return;
    searches.set(history);
    defaults.setSearchBarSearches(history);
  }
};

}  // namespace

std::shared_ptr<const markdown::MarkdownParser> SearchBarView::makeParser() {
  return std::make_shared<const markdown::MarkdownParser>(MarkdownHtmlHelper::makeParser());
}

bool SearchBarView::isKeyMissing() {
  const auto key = UserDefaultsHelper().getString(UserDefault::searchKey);
  return key.empty() || key == defaultUrlString(WebViewSwitchType::search);
}

void SearchBarView::handleTextChange(const std::string& newText) const {
  isTextEmpty.set(newText.empty());
  if (newText.size() < cutLength.get()) cutLength.set(0);
}

void SearchBarView::handleCut() const {
  // Afterwards: what the field could hold is on its way.
  DispatchQueue::main().async([text = text, cutLength = cutLength] { cutLength.set(text.get().size()); });
}

void SearchBarView::completeChatQuery() const {
  const auto prompt = text.get();
  if (prompt.empty() || prompt == searchedText.get() || isTextFieldDisabled.get()) {
    isTextFieldDisabled.set(false);
    return;
  }
  isPrompting.set(true);
  isTextFieldDisabled.set(true);
  page->warmUp();
  const PendingSearch pending{prompt,     defaults,     parser.get(), isPrompting,
                              resultHtml, searchedText, searches};
  SearchRequestHelper().chatGPTRequest(
      prompt, defaults.getString(UserDefault::searchKey),
      [pending](const SearchRequestHelper::Result& result) { pending.complete(result); });
}

void SearchBarView::recentSearchClicked(const SearchBarSearch& search) const {
  isTextEmpty.set(true);
  isTextFieldDisabled.set(true);
  text.set("");
  resultHtml.set("");
  if (search.resultMarkdown) page->warmUp();
  DispatchQueue::main().asyncAfter(recallDelay,
                                   [search, text = text, searchedText = searchedText, resultHtml = resultHtml,
                                    isTextFieldDisabled = isTextFieldDisabled] {
                                     text.set(search.searchPrompt);
                                     searchedText.set(search.searchPrompt);
                                     resultHtml.set(search.resultMarkdown.value_or(""));
                                     isTextFieldDisabled.set(false);
                                   });
}

void SearchBarView::setApiKey() const {
  const auto key = text.get();
  if (key.empty()) return;
  defaults.set(key, UserDefault::searchKey);
  didSetApiKey(true);
}

void SearchBarView::didSetApiKey(bool isApiKeySet) const {
  debugLog(std::string("Q$: didSetApiKey isApiKeySet ") + (isApiKeySet ? "true" : "false"));
  text.set("");
  isMissingApiKey.set(!isApiKeySet);
  resultHtml.set("");
}

View SearchBarView::searchRow() const {
  return HStack({.spacing = 8},
                {SearchBarRecentsUIView{
                     .searches = searches.binding(),
                     .action = [self = *this](const SearchBarSearch& s) { self.recentSearchClicked(s); },
                     .clearAction =
                         [defaults = defaults, searches = searches] {
                           defaults.setSearchBarSearches({});
                           searches.set({});
                         }},
                 SearchTextFieldUIView{
                     .iconSize = rawValue(iconSize),
                     .fontSize = fontSize,
                     .isMissingApiKey = isMissingApiKey.binding(),
                     .text = text.binding(),
                     .isDisabled = isTextFieldDisabled.binding(),
                     .onCommit =
                         [self = *this] {
                           if (self.isMissingApiKey.get()) {
                             self.setApiKey();
                           } else {
                             self.completeChatQuery();
                           }
                         },
                     .onChange = [self = *this](const std::string& t) { self.handleTextChange(t); },
                     .onCut = [self = *this] { self.handleCut(); }},
                 AppIconUIView{.iconSize = iconSize,
                               .action = [show = showResetKeyView] { show.set(!show.get()); }}})
      .padding(16)
      .frame({.minHeight = searchBarHeight})
      .onAppear(
          [defaults = defaults, searches = searches] { searches.set(defaults.getSearchBarSearches()); });
}

View SearchBarView::buttonRow() const {
  return SearchButtonRowUIView{.isMissingApiKey = isMissingApiKey.binding(),
                               .isTextEmpty = isTextEmpty.binding(),
                               .showResetKeyView = showResetKeyView.binding(),
                               .resultString = resultHtml.binding(),
                               .text = text.binding(),
                               .didSetApiKey = [self = *this](bool isSet) { self.didSetApiKey(isSet); }};
}

View SearchBarView::result() const {
  return SearchResultTextUIView{.useSmallerHeight = useSmallerHeight.binding(),
                                .isMissingApiKey = isMissingApiKey.binding(),
                                .resultHtml = resultHtml.binding(),
                                .page = page};
}

std::string SearchBarView::news() const {
  if (isPrompting.get()) return "Waiting for the answer";
  if (isMissingApiKey.get() || resultHtml.get().empty()) return {};
  return searchedText.get() == text.get() ? "The answer is there" : "The question could not be answered";
}

View SearchBarView::body() const {
  Views rows = {searchRow()};
  if (cutLength.get() > 0) {
    rows.push_back(Text("The prompt is too long for the field: its end was cut off.")
                       .font(Font::body)
                       .padding(EdgeInsets{.top = 0, .leading = 16, .bottom = 10, .trailing = 16}));
  }
  rows.push_back(Divider().opacity(0.5));
  // For who doesn't see the wheel turn, nor the answer come.
  rows.push_back(VStack({}).accessibilityRole(AccessibilityRole::status).accessibilityLabel(news()));
  if (isPrompting.get()) {
    rows.push_back(
        VStack(
            {Spacer(),
             ProgressView().accessibilityLabel("Waiting for the answer").frame({.width = 32, .height = 32}),
             Spacer()})
            .frame({.height = progressHeight}));
  } else if (isMissingApiKey.get()) {
    rows.push_back(result());
    rows.push_back(buttonRow());
  } else if (!resultHtml.get().empty()) {
    rows.push_back(buttonRow());
    rows.push_back(result().onTapGesture([isDisabled = isTextFieldDisabled] { isDisabled.set(true); }));
  }
  return VStack({.spacing = 0, .alignment = Alignment::fill}, std::move(rows))
      .padding(EdgeInsets::horizontal(sidePadding))
      .frame({.width = width - 2 * sidePadding});
}

}  // namespace velkin
