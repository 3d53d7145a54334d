#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

namespace markdown {

/// Answers where the HTML element that begins at a "<" ends: behind its closing tag, or at the end of the
/// text if it is never closed.
///
/// An element is found by running over the tags behind it. If a text makes that happen over and over on the
/// same stretch, all tags are indexed once and every later answer is looked up. The index is possible because
/// a tag always ends at the first ">" behind its "<": whatever the root, the tags read behind it are the same
/// ones, the first of each stretch between two ">".
class HtmlElements {
 public:
  explicit HtmlElements(std::string_view text) noexcept : text_(text) {}

  /// `start` is the position of a character "<". Absent if no element begins there.
  [[nodiscard]] std::optional<std::size_t> findEnd(std::size_t start);

 private:
  struct Tag {
    std::string_view name;
    std::size_t end;
    bool isSelfClosing;
  };
  /// What is open right before a tag: the end of the element whose root is of this name and stands before it.
  struct State {
    std::size_t tagStart;
    std::size_t elementEnd;
  };

  [[nodiscard]] std::optional<std::size_t> findGreater(std::size_t from);
  [[nodiscard]] std::optional<Tag> tagAt(std::size_t start);
  [[nodiscard]] std::size_t endByScanning(const Tag& root);
  [[nodiscard]] std::size_t endByIndex(const Tag& root) const;
  void buildIndex();

  std::string_view text_;
  std::size_t greaterFrom_ = 1;
  std::size_t greaterTo_ = 0;
  std::size_t lastStart_ = std::string_view::npos;
  std::size_t lastEnd_ = 0;
  std::size_t scannedBytes_ = 0;
  bool isIndexed_ = false;
  /// For each name its states, from the end of the text backwards.
  std::map<std::string_view, std::vector<State>> statesByName_;
};

}  // namespace markdown
