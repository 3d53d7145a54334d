#include "MarkdownEngine/HtmlWriter.h"

#include "MarkdownEngine/GraphemeClusters.h"
#include "MarkdownEngine/HTML.h"
#include "MarkdownEngine/InlineCode.h"
#include "MarkdownEngine/MarkdownImage.h"

#include <algorithm>
#include <charconv>

namespace markdown {
namespace {

constexpr ByteSet escapes{"<>&"};
constexpr std::size_t leastAllowance = std::size_t{16} << 20;
constexpr std::size_t allowancePerInputByte = 16;

}  // namespace

std::string_view escaped(char character) noexcept {
  return character == '<' ? "&lt;" : character == '>' ? "&gt;" : "&amp;";
}

HtmlWriter::HtmlWriter(const Context& context)
    : context_(context), allowance_(leastAllowance + allowancePerInputByte * context.content.source.size()) {
  html_.reserve(context.content.source.size() / 2 * 3);
}

void HtmlWriter::makeRoom(std::size_t sourcePosition) {
  constexpr std::size_t enough = 4096;
  if (html_.capacity() - size() >= enough) return;
  // What is still to be written is told by what was: the string then grows once instead of by doubling.
  constexpr double leastGrowth = 1.125;
  constexpr double mostGrowth = 4;
  constexpr double margin = 1.05;
  const auto capacity = static_cast<double>(html_.capacity() + enough);
  const auto sourceSize = static_cast<double>(context_.content.source.size() + 1);
  const double expected =
      static_cast<double>(size()) * margin * sourceSize / static_cast<double>(sourcePosition + 1);
  html_.reserve(
      static_cast<std::size_t>(std::clamp(expected, capacity * leastGrowth, capacity * mostGrowth)));
}

bool HtmlWriter::takeFromAllowance(std::size_t bytes) noexcept {
  if (bytes > allowance_) return false;
  allowance_ -= bytes;
  return true;
}

void HtmlWriter::writeEscaped(std::string_view text) {
  std::size_t start = 0;
  std::size_t index = escapes.find(text.data(), 0, text.size());
  for (; index < text.size(); index = escapes.find(text.data(), index + 1, text.size())) {
    if (!graphemes::standsAlone(text, index)) continue;
    write(text.substr(start, index - start));
    write(escaped(text[index]));
    start = index + 1;
  }
  write(text.substr(start));
}

void HtmlWriter::writeContent(const ComponentRange& range) {
  using Kind = Component::Kind;
  const Content& content = context_.content;
  if (range.first < range.last) makeRoom(content.components[range.first].begin);
  for (std::size_t index = range.first; index != range.last; ++index) {
    const Component& component = content.components[index];
    switch (component.kind) {
      case Kind::text:
        write(content.text(component));
        break;
      case Kind::blank:
        write(' ');
        break;
      case Kind::escape:
        write(escaped(content.source[component.begin]));
        break;
      case Kind::linebreak:
        write("<br>");
        break;
      case Kind::styleMarker:
        writeMarker(component);
        break;
      case Kind::inlineCode: {
        const std::size_t start = size();
        write("<code>");
        writeEscaped(content.text(component));
        write("</code>");
        applyModifiers(InlineCode::modifierTarget, start,
                       content.source.substr(component.begin - 1, component.extra + 2));
        break;
      }
      case Kind::html: {
        const std::size_t start = size();
        write(content.text(component));
        applyModifiers(HTML::modifierTarget, start, content.text(component));
        break;
      }
      case Kind::linkStart:
      case Kind::imageStart:
        startLink(component);
        break;
      case Kind::linkEnd:
      case Kind::imageEnd:
        endLink(component);
        break;
      case Kind::listStart:
      case Kind::listEnd:
        writeListTag(component);
        break;
      case Kind::itemStart:
        write("<li>");
        break;
      case Kind::itemEnd:
        write("</li>");
        break;
      case Kind::jump:
        index = component.extra - 1;
        break;
    }
  }
}

void HtmlWriter::writeMarker(const Component& component) {
  using LeftOver = TextStyleMarker::LeftOver;
  const TextStyleMarker marker = unpacked(component.extra);
  const std::string_view source = context_.content.source;
  if (!marker.isValid) {
    write(source.substr(component.begin, marker.length));
    return;
  }
  if (marker.leftOver == LeftOver::prefix) write(source[component.begin]);
  write(marker.kind == TextStyleMarker::Kind::opening ? "<" : "</");
  write(htmlTagName(marker.style));
  write('>');
  if (marker.leftOver == LeftOver::suffix) write(source[component.begin + 1]);
}

void HtmlWriter::writeListTag(const Component& component) {
  const bool isOrdered = component.extra != Component::unordered;
  if (component.kind == Component::Kind::listEnd) {
    write(isOrdered ? "</ol>" : "</ul>");
    return;
  }
  if (!isOrdered || component.extra == 1) {
    write(isOrdered ? "<ol>" : "<ul>");
    return;
  }
  char digits[24];
  const auto written = std::to_chars(std::begin(digits), std::end(digits), component.extra);
  write("<ol start=\"");
  write(std::string_view(digits, static_cast<std::size_t>(written.ptr - digits)));
  write("\">");
}

void HtmlWriter::startLink(const Component& component) {
  const bool isImage = component.kind == Component::Kind::imageStart;
  const std::size_t start = size();
  write(isImage ? "<img src=\"" : "<a href=\"");
  writeAddress(context_.content.links[component.extra]);
  const std::size_t description = size() + 1;
  write(isImage ? "\" alt=\"" : "\">");
  starts_.push_back({start, description});
}

void HtmlWriter::endLink(const Component& component) {
  const Start start = starts_.back();
  starts_.pop_back();
  const Link& link = context_.content.links[component.extra];
  const std::string_view markdown =
      context_.content.source.substr(link.begin, link.target.linkEnd() - link.begin);
  if (component.kind == Component::Kind::linkEnd) {
    write("</a>");
    applyModifiers(Link::modifierTarget, start.link, markdown);
    return;
  }
  constexpr std::string_view descriptionStart = " alt=\"";
  if (size() == start.description + descriptionStart.size()) {
    truncate(start.description);
  } else {
    write('"');
  }
  write("/>");
  applyModifiers(MarkdownImage::Image::modifierTarget, start.link, markdown);
}

void HtmlWriter::writeAddress(const Link& link) {
  const std::string_view target = context_.content.url(link);
  if (!link.target.isReference) {
    write(target);
  } else if (context_.urls != nullptr) {
    write(declared(target, *context_.urls));
  } else {
    openAddresses_.push_back({size(), target.size()});
    write(target);
  }
}

std::string_view HtmlWriter::declared(std::string_view name, const NamedURLCollection& urls) {
  const auto url = urls.url(name);
  return url && takeFromAllowance(url->size()) ? *url : name;
}

std::string HtmlWriter::take(const NamedURLCollection& urls) && {
  if (openAddresses_.empty() || urls.isEmpty()) return std::move(html_);
  GrowingArray<std::string_view> addresses;
  std::size_t length = size();
  for (const OpenAddress& open : openAddresses_) {
    const std::string_view name = html(open.position).substr(0, open.nameLength);
    const std::string_view address = declared(name, urls);
    // A name that stays is a view on the string that is about to change.
    const bool isDeclared = address.data() != name.data();
    addresses.push_back(isDeclared ? address : std::string_view());
    if (isDeclared) length += address.size() - name.size();
  }
  std::string resolved;
  resolved.reserve(length);
  std::size_t start = 0;
  for (std::size_t i = 0; i < addresses.size(); ++i) {
    if (addresses[i].data() == nullptr) continue;
    resolved.append(html_, start, openAddresses_[i].position - start).append(addresses[i]);
    start = openAddresses_[i].position + openAddresses_[i].nameLength;
  }
  resolved.append(html_, start);
  return resolved;
}

void HtmlWriter::applyModifiers(Modifier::Target target, std::size_t start, std::string_view markdown) {
  if (context_.modifiers.isEmpty()) return;
  context_.modifiers.applyModifiers(target, [&](const Modifier& modifier) {
    const std::string changed = modifier.closure(html_.substr(start), markdown);
    html_.replace(start, std::string::npos, changed);
  });
}

}  // namespace markdown
