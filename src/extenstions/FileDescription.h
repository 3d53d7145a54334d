#pragma once

#include <string>

namespace velkin {

/// A date as it stands in the names of saved files: month, day, year and, behind "_", hours and minutes of
/// the local time, as in "03-05-26_1407". `secondsSince1970` as the platform's `now()`.
std::string fileDescription(double secondsSince1970);

}  // namespace velkin
