#include "Platform/SitePermissions.h"

#include "Platform/DebugLog.h"
#include "Platform/WholeFile.h"

#include <cerrno>

#include <nlohmann/json.hpp>

namespace platform {

namespace {

/// Someone who answers a question of every site they ever see has some kilobytes.
constexpr std::size_t sizeLimit = std::size_t{1} << 20U;

}  // namespace

SitePermissions::SitePermissions(std::filesystem::path file) : file_(std::move(file)) {
  const auto contents = readWholeFile(file_, sizeLimit);
  if (!contents && contents.error().code == ENOENT) return;
  const auto document = contents ? nlohmann::json::parse(contents->bytes, nullptr, false) : nlohmann::json();
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
  makePrivateFolder(file_.parent_path());
  const auto replaced =
      replaceFile(file_, document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + '\n');
  if (!replaced) debugLog("SitePermissions", "save()", file_.string() + ": " + replaced.error().why);
}

}  // namespace platform
