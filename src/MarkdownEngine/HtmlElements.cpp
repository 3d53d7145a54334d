#include "MarkdownEngine/HtmlElements.h"

#include "MarkdownEngine/CharacterClasses.h"
#include "MarkdownEngine/GraphemeClusters.h"

#include <algorithm>

namespace markdown {
namespace {

using Kind = graphemes::Whitespace::Kind;

constexpr ByteSet whitespaceStops{whitespaceBytes};

/// A text of which more than this many times its length has been scanned for closing tags is indexed.
constexpr std::size_t scansBeforeIndex = 4;

bool isClosingTagOf(std::string_view name, std::string_view rootName) noexcept {
  return name.size() == rootName.size() + 1 && name.front() == '/' && name.substr(1) == rootName;
}

}  // namespace

std::optional<std::size_t> HtmlElements::findEnd(std::size_t start) {
  if (start == lastStart_) return lastEnd_;
  const std::optional<Tag> root = tagAt(start);
  if (!root) return std::nullopt;
  if (root->isSelfClosing) return root->end;
  if (!isIndexed_ && scannedBytes_ / scansBeforeIndex > text_.size()) buildIndex();
  lastStart_ = start;
  lastEnd_ = isIndexed_ ? endByIndex(*root) : endByScanning(*root);
  return lastEnd_;
}

std::optional<std::size_t> HtmlElements::findGreater(std::size_t from) {
  if (from < greaterFrom_ || from > greaterTo_) {
    greaterFrom_ = from;
    greaterTo_ = text_.find('>', from);
    while (greaterTo_ != std::string_view::npos && !graphemes::standsAlone(text_, greaterTo_)) {
      greaterTo_ = text_.find('>', greaterTo_ + 1);
    }
  }
  return greaterTo_ == std::string_view::npos ? std::nullopt : std::optional(greaterTo_);
}

std::optional<HtmlElements::Tag> HtmlElements::tagAt(std::size_t start) {
  const std::size_t nameStart = start + 1;
  const auto greater = findGreater(nameStart);
  if (!greater || *greater == nameStart) return std::nullopt;
  std::size_t nameEnd = whitespaceStops.find(text_.data(), nameStart, *greater);
  while (nameEnd < *greater && graphemes::whitespaceAtScalar(text_, nameEnd).kind == Kind::none) {
    nameEnd = whitespaceStops.find(text_.data(), nameEnd + 1, *greater);
  }
  if (nameEnd == nameStart) return std::nullopt;

  const auto endsWithSlash = [this](std::size_t from, std::size_t to) {
    return from < to && text_[to - 1] == '/' && graphemes::standsAlone(text_, to - 1);
  };
  Tag tag{text_.substr(nameStart, nameEnd - nameStart), *greater + 1, true};
  if (endsWithSlash(nameStart, nameEnd)) {
    tag.name.remove_suffix(1);
  } else {
    tag.isSelfClosing = endsWithSlash(nameEnd, *greater) || tag.name == "!--";
  }
  return tag;
}

std::size_t HtmlElements::endByScanning(const Tag& root) {
  std::size_t openRoots = 1;
  std::size_t end = text_.size();
  std::size_t index = text_.find('<', root.end);
  while (index != std::string_view::npos) {
    std::size_t next = index + 1;
    if (graphemes::standsAlone(text_, index)) {
      if (!findGreater(next)) break;
      if (const auto tag = tagAt(index)) {
        next = tag->end;
        if (tag->name == root.name) {
          ++openRoots;
        } else if (isClosingTagOf(tag->name, root.name) && --openRoots == 0) {
          end = tag->end;
          break;
        }
      }
    }
    index = text_.find('<', next);
  }
  scannedBytes_ += end - root.end;
  return end;
}

std::size_t HtmlElements::endByIndex(const Tag& root) const {
  const auto found = statesByName_.find(root.name);
  if (found == statesByName_.end()) return text_.size();
  const auto& states = found->second;
  const auto isBehindRoot = [&root](const State& state) { return state.tagStart >= root.end; };
  const auto firstBefore = std::partition_point(states.begin(), states.end(), isBehindRoot);
  return firstBefore == states.begin() ? text_.size() : std::prev(firstBefore)->elementEnd;
}

void HtmlElements::buildIndex() {
  isIndexed_ = true;
  std::vector<std::pair<std::size_t, Tag>> tags;
  std::size_t index = text_.find('<');
  while (index != std::string_view::npos) {
    std::size_t next = index + 1;
    if (graphemes::standsAlone(text_, index)) {
      if (!findGreater(next)) break;
      if (const auto tag = tagAt(index)) {
        tags.emplace_back(index, *tag);
        next = tag->end;
      }
    }
    index = text_.find('<', next);
  }
  // Backwards, the closing tags of a name that no later root has taken form a stack; its top closes the next
  // root.
  std::map<std::string_view, std::vector<std::size_t>> closingEndsByName;
  for (auto entry = tags.rbegin(); entry != tags.rend(); ++entry) {
    const auto& [start, tag] = *entry;
    const auto remember = [&, tagStart = start](std::string_view name, const std::vector<std::size_t>& ends) {
      statesByName_[name].push_back({tagStart, ends.empty() ? text_.size() : ends.back()});
    };
    auto& ends = closingEndsByName[tag.name];
    if (!ends.empty()) ends.pop_back();
    remember(tag.name, ends);
    if (tag.name.empty() || tag.name.front() != '/') continue;
    const std::string_view closed = tag.name.substr(1);
    auto& closedEnds = closingEndsByName[closed];
    closedEnds.push_back(tag.end);
    remember(closed, closedEnds);
  }
}

}  // namespace markdown
