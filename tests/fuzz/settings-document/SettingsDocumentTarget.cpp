#include "Platform/Headless/HeadlessPlatform.h"
#include "UserData/SettingsManager.h"
#include "UserData/VelkinSettingsJSON.h"
#include "fuzz/support/Require.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

using fuzz::require;

/// Whatever is in a file that a user imports: no crash; what isn't a document says why, in few words; what is
/// one can be written, and reads the same; and it can be stored, and exported again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  platform::HeadlessPlatform desktop;
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const auto decoded = velkin::decodeVelkinSettings(input);
  if (!decoded) {
    require(!decoded.error().empty() && decoded.error().size() < 100, "it says why it is no document");
    return 0;
  }
  const auto encoded = velkin::encode(*decoded);
  require(encoded.has_value(), "what was read can be written");
  const auto again = velkin::decodeVelkinSettings(*encoded);
  require(again.has_value(), "what was written can be read");
  require(*again == *decoded, "it reads as it was written");

  const velkin::SettingsManager manager;
  manager.setUserDefaultSettings(*decoded);
  require(velkin::encode(manager.getUserDefaultSettings()).has_value(), "what was stored can be exported");
  return 0;
}
