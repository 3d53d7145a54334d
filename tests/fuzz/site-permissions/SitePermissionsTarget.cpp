#include "Platform/DebugLog.h"
#include "Platform/SitePermissions.h"
#include "fuzz/support/Require.h"
#include "fuzz/support/ScratchFolder.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

using fuzz::require;

/// Whatever stands in the file of the sites' permissions: no crash; an answer that is given is there at the
/// next start, and those that could be read are too.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fuzz::ScratchFolder folder;
  platform::setDebugLogSink([](std::string_view) {});
  const auto path = folder.file("sites.json", {reinterpret_cast<const char*>(data), size});
  platform::SitePermissions permissions(path);
  const auto read = permissions.all();
  permissions.remember("https://fuzz.test", "camera", true);
  const platform::SitePermissions again(path);
  require(again.answer("https://fuzz.test", "camera") == true, "an answer is there at the next start");
  require(again.all() == permissions.all(), "and so is everything else");
  require(permissions.all().size() <= read.size() + 1, "nothing was added by itself");
  return 0;
}
