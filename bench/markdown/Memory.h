#pragma once

#include <functional>
#include <optional>
#include <string>

/// The resident memory that the engine takes at its peak for a text beside the text itself, its result
/// included, in bytes for each byte of input. It is measured in a process of its own, before whose
/// measurement nothing large was freed.
[[nodiscard]] std::optional<double> peakMemoryPerInputByte(const std::function<std::string()>& makeText);
