#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace markdown {

/// The declared addresses by their names. Names are told apart without regard to case; addresses are views on
/// the text and taken as they stand.
class NamedURLCollection {
 public:
  /// A later declaration of a name replaces an earlier one. `name` is in lower case.
  void insert(std::string name, std::string_view url) { urlsByName_.insert_or_assign(std::move(name), url); }
  [[nodiscard]] bool isEmpty() const noexcept { return urlsByName_.empty(); }
  /// The address of a name in any case.
  [[nodiscard]] std::optional<std::string_view> url(std::string_view name) const;

 private:
  std::map<std::string, std::string_view, std::less<>> urlsByName_;
};

/// The full lower-case mapping of a text in valid UTF-8.
[[nodiscard]] std::string lowercased(std::string_view text);

}  // namespace markdown
