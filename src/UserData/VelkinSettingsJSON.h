#pragma once

#include "UserData/VelkinSettings.h"

#include <string>
#include <string_view>
#include <vector>

#include <tl/expected.hpp>

namespace velkin {

/// Pretty printed, without the fields that are absent. The error, in words: a number that isn't finite.
tl::expected<std::string, std::string> encode(const VelkinSettings& settings);

/// The document out of its JSON. A missing key and a null leave the field absent, unknown keys are passed
/// over, and one value of a wrong type fails the whole. The error says in words what is wrong and never holds
/// anything of the document but its own keys.
tl::expected<VelkinSettings, std::string> decodeVelkinSettings(std::string_view json);

/// The document keys of the fields that are present.
std::vector<std::string_view> presentFields(const VelkinSettings& settings);

}  // namespace velkin
