#include "Platform/SitePermissions.h"

#include "Platform/DebugLog.h"

#include <fstream>
#include <system_error>

#include <nlohmann/json.hpp>

namespace platform {

SitePermissions::SitePermissions(std::filesystem::path file) : file_(std::move(file)) {
  std::ifstream input(file_);
  if (!input) return;
  const auto document = nlohmann::json::parse(input, nullptr, false);
  if (!document.is_object()) {
    debugLog("SitePermissions", "init(file:)",
             file_.string() + " can't be read; every site will be asked for again");
    return;
  }
  for (const auto& [site, kinds] : document.items()) {
    if (!kinds.is_object()) continue;
    for (const auto& [kind, isAllowed] : kinds.items()) {
      if (isAllowed.is_boolean()) answers_[{site, kind}] = isAllowed.get<bool>();
    }
  }
}

std::optional<bool> SitePermissions::answer(const std::string& site, const std::string& kind) const {
  const auto found = answers_.find({site, kind});
  if (found == answers_.end()) return std::nullopt;
  return found->second;
}

void SitePermissions::remember(const std::string& site, const std::string& kind, bool isAllowed) {
  answers_[{site, kind}] = isAllowed;
  save();
}

void SitePermissions::forget(const std::string& site, const std::string& kind) {
  if (answers_.erase({site, kind}) != 0) save();
}

void SitePermissions::save() const {
  nlohmann::json document = nlohmann::json::object();
  for (const auto& [key, isAllowed] : answers_) document[key.first][key.second] = isAllowed;
  std::error_code error;
  std::filesystem::create_directories(file_.parent_path(), error);
  auto fresh = file_;
  fresh += ".new";
  {
    std::ofstream output(fresh);
    output << document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
    output.flush();
    if (!output) error = std::make_error_code(std::errc::io_error);
  }
  if (!error) std::filesystem::rename(fresh, file_, error);
  if (error) debugLog("SitePermissions", "save()", file_.string() + ": " + error.message());
}

}  // namespace platform
