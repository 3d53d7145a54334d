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

/// `source` begins with the characters that the marker was read from.
void appendMarker(std::string& html, const TextStyleMarker& marker, std::string_view source) {
  using LeftOver = TextStyleMarker::LeftOver;
  if (!marker.isValid) {
    html.append(source.substr(0, marker.length));
    return;
  }
  if (marker.leftOver == LeftOver::prefix) html.push_back(source[0]);
  html.append(marker.kind == TextStyleMarker::Kind::opening ? "<" : "</");
  html.append(htmlTagName(marker.style));
  html.push_back('>');
  if (marker.leftOver == LeftOver::suffix) html.push_back(source[1]);
}

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
  constexpr double mostGrowth = 8;
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
        appendMarker(html_, unpacked(component.extra), content.source.substr(component.begin));
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

void HtmlWriter::replaceMarker(const PlacedMarker& placed, const TextStyleMarker& marker) {
  std::string written;
  appendMarker(written, placed.marker, context_.content.source.substr(placed.begin));
  markerReplacements_.push_back({placed.position, written.size(), placed.begin, marker});
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

/// A stretch of the HTML and what is put in its place.
struct HtmlWriter::Edit {
  std::size_t position;
  std::size_t length;
  std::string_view replacement;
};

GrowingArray<HtmlWriter::Edit> HtmlWriter::addressEdits(const NamedURLCollection& urls) {
  GrowingArray<Edit> edits;
  if (urls.isEmpty()) return edits;
  for (const OpenAddress& open : openAddresses_) {
    const std::string_view name = html(open.position).substr(0, open.nameLength);
    const std::string_view address = declared(name, urls);
    const bool isDeclared = address.data() != name.data();
    if (isDeclared) edits.push_back({open.position, open.nameLength, address});
  }
  return edits;
}

std::string HtmlWriter::take(const NamedURLCollection& urls) && {
  GrowingArray<Edit> edits = addressEdits(urls);
  if (edits.empty() && markerReplacements_.empty()) return std::move(html_);
  std::string markers;
  if (!markerReplacements_.empty()) {
    GrowingArray<std::size_t> ends;
    for (const MarkerReplacement& replacement : markerReplacements_) {
      appendMarker(markers, replacement.marker, context_.content.source.substr(replacement.sourcePosition));
      ends.push_back(markers.size());
    }
    for (std::size_t i = 0; i < ends.size(); ++i) {
      const MarkerReplacement& replacement = markerReplacements_[i];
      const std::size_t start = i == 0 ? 0 : ends[i - 1];
      edits.push_back({replacement.position, replacement.length,
                       std::string_view(markers).substr(start, ends[i] - start)});
    }
    std::sort(edits.begin(), edits.end(),
              [](const Edit& a, const Edit& b) { return a.position < b.position; });
  }
  std::size_t length = size();
  for (const Edit& edit : edits) length += edit.replacement.size() - edit.length;
  std::string edited;
  edited.reserve(length);
  std::size_t start = 0;
  for (const Edit& edit : edits) {
    edited.append(html_, start, edit.position - start).append(edit.replacement);
    start = edit.position + edit.length;
  }
  edited.append(html_, start);
  return edited;
}

void HtmlWriter::applyModifiers(Modifier::Target target, std::size_t start, std::string_view markdown) {
  if (context_.modifiers.isEmpty()) return;
  context_.modifiers.applyModifiers(target, [&](const Modifier& modifier) {
    const std::string changed = modifier.closure(html_.substr(start), markdown);
    html_.replace(start, std::string::npos, changed);
  });
}

}  // namespace markdown
