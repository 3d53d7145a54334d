#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace platform {

/// What the user allowed or refused to each site, kept in one file. Main thread.
class SitePermissions {
 public:
  explicit SitePermissions(std::filesystem::path file);

  /// Nothing if the user wasn't asked yet. `site` is a page's origin ("https://example.org"), `kind` a word
  /// for what it wants ("camera").
  std::optional<bool> answer(const std::string& site, const std::string& kind) const;
  /// Keeps the answer; one that can't be written holds until the program ends.
  void remember(const std::string& site, const std::string& kind, bool isAllowed);

  /// Has the site ask again.
  void forget(const std::string& site, const std::string& kind);

  using Answers = std::map<std::pair<std::string, std::string>, bool>;
  const Answers& all() const noexcept { return answers_; }

 private:
  void save() const;

  std::filesystem::path file_;
  Answers answers_;
};

}  // namespace platform
