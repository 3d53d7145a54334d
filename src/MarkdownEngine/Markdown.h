#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace markdown {

/// A title that is worked out when it is first asked for, and at most once.
class TitleStorage;

/// What became of a document. It holds no view on the input. Copies share what they have worked out.
class Markdown {
 public:
  /// The whole document's fragment: no wrapper, no newline at the end.
  std::string html;
  /// Of the metadata header; empty without one.
  std::map<std::string, std::string> metadata;

  Markdown() = default;
  Markdown(std::string fragment, std::map<std::string, std::string> values,
           std::shared_ptr<TitleStorage> title)
      : html(std::move(fragment)), metadata(std::move(values)), titleStorage_(std::move(title)) {}

  /// The plain text of the first heading of level 1, unless another title was set. Safe to be called on
  /// copies in several threads.
  [[nodiscard]] std::optional<std::string> title() const;
  /// Gives this copy a title of its own; the others keep theirs. Without one it falls back on the heading.
  void setTitle(std::optional<std::string> title);

 private:
  std::optional<std::string> ownTitle_;
  std::shared_ptr<TitleStorage> titleStorage_;
};

}  // namespace markdown
