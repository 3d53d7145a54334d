#include "SearchBar/SearchButtonRowUIView.h"

#include "Platform/FatalError.h"
#include "Platform/NSPasteboard.h"
#include "Platform/NSWorkspace.h"
#include "SearchBar/SearchButtonUIView.h"
#include "Values/ServiceAddresses.h"

namespace velkin {

using namespace platform;

URL SearchButtonRowUIView::defaultKeyUrl() { return unwrap(URL::parse(serviceAddresses.keyPage)); }

void SearchButtonRowUIView::getKeyClicked() const { NSWorkspace::shared().open(keyUrl); }

void SearchButtonRowUIView::setKey(const std::string& key) const {
  UserDefaultsHelper().set(key, UserDefault::searchKey);
  isMissingApiKey.set(key.empty());
  if (didSetApiKey) didSetApiKey(!key.empty());
}

void SearchButtonRowUIView::saveKeyClicked() const { setKey(text.get()); }

void SearchButtonRowUIView::resetKeyClicked() const { setKey(""); }

void SearchButtonRowUIView::copyClicked() const {
  // The prompt as a heading in Markdown, the answer as HTML: so it is pasted outside.
  auto& pasteboard = NSPasteboard::generalPasteboard();
  pasteboard.clearContents();
  pasteboard.setString("## " + text.get() + "\n\n" + resultString.get(), NSPasteboardTypeString);
}

View SearchButtonRowUIView::body() const {
  Views buttons;
  buttons.push_back(when(showResetKeyView.get(), [this] {
    return VStack({SearchButtonUIView{"Reset Key", Color::Role::red, Binding<bool>::constant(false),
                                      [self = *this] { self.resetKeyClicked(); }}});
  }));
  buttons.push_back(Spacer());
  if (isMissingApiKey.get()) {
    buttons.push_back(SearchButtonUIView{"Get Key", Color::Role::purple, isDisabled.binding(),
                                         [self = *this] { self.getKeyClicked(); }});
    buttons.push_back(SearchButtonUIView{"Save Key", Color::Role::blue, isTextEmpty,
                                         [self = *this] { self.saveKeyClicked(); }});
  } else {
    buttons.push_back(SearchButtonUIView{"Copy", Color::Role::blue, isDisabled.binding(),
                                         [self = *this] { self.copyClicked(); }});
  }
  buttons.push_back(Spacer());
  return HStack({.spacing = 12}, std::move(buttons)).padding(EdgeInsets{8, 12, 12, 12});
}

}  // namespace velkin
