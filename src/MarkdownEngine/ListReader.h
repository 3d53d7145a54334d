#pragma once

#include "MarkdownEngine/Component.h"
#include "MarkdownEngine/Reader.h"

#include <cstddef>

namespace markdown {

/// Reads a list line by line. The lists nested in it stand on a stack of their own, so that their depth is
/// bounded by nothing but the input.
class ListReader {
 public:
  ListReader(Reader& reader, Content& content) noexcept : reader_(reader), content_(content) {}

  /// Reads the list whose items stand behind `indentation` blanks. False if the first line is no item;
  /// nothing is added to the content then.
  [[nodiscard]] bool read(std::size_t indentation);

 private:
  /// What becomes of the innermost list at a position.
  enum class Next : bool { goOn, endList };

  [[nodiscard]] bool open(std::size_t indentation);
  [[nodiscard]] bool standsAtItem() const;
  [[nodiscard]] bool isAtStartOfLine() const noexcept;
  Next readLine();
  Next readIndented();
  Next readNumbered();
  Next readBulleted();
  void addItem();
  void addTextToLastItem();
  void readText();
  void startNestedList(OpenList& around);
  void close();

  [[nodiscard]] OpenList& list() noexcept { return content_.openLists.back(); }
  void setJump(std::size_t jump, std::size_t target) noexcept { content_.components[jump].extra = target; }
  /// Adds a jump that leads nowhere yet but to the next component.
  std::size_t addJump();

  Reader& reader_;
  Content& content_;
};

}  // namespace markdown
