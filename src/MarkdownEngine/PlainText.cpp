#include "MarkdownEngine/PlainText.h"

#include "MarkdownEngine/GraphemeClusters.h"
#include "MarkdownEngine/HtmlWriter.h"

namespace markdown {

void writeEscaped(std::string_view escapable, std::string& text) {
  constexpr ByteSet escapes{"<>&"};
  for (std::size_t i = 0; i < escapable.size(); ++i) {
    if (escapes.contains(escapable[i]) && graphemes::standsAlone(escapable, i)) {
      text.append(escaped(escapable[i]));
    } else {
      text.push_back(escapable[i]);
    }
  }
}

void writePlainText(const Content& content, const ComponentRange& range, std::string& text) {
  using Kind = Component::Kind;
  std::size_t listDepth = 0;
  bool isFirstItem = true;
  for (std::size_t index = range.first; index != range.last; ++index) {
    const Component& component = content.components[index];
    if (component.kind == Kind::jump) {
      index = component.extra - 1;
    } else if (component.kind == Kind::listStart) {
      ++listDepth;
    } else if (component.kind == Kind::listEnd) {
      --listDepth;
    } else if (listDepth <= 1) {
      switch (component.kind) {
        case Kind::text:
          text.append(content.text(component));
          break;
        case Kind::blank:
          text.push_back(' ');
          break;
        case Kind::escape:
          text.append(escaped(content.source[component.begin]));
          break;
        case Kind::linebreak:
          text.push_back('\n');
          break;
        case Kind::inlineCode:
          writeEscaped(content.text(component), text);
          break;
        case Kind::itemStart:
          if (!isFirstItem) text.append(", ");
          isFirstItem = false;
          break;
        default:
          break;
      }
    }
  }
}

}  // namespace markdown
