#pragma once

#include <functional>
#include <string>

/// Prints how fast the engine and two established parsers turn the text into HTML, in the same process, and
/// how much memory the engine takes.
void compareThroughput(const std::string& name, const std::function<std::string()>& makeText);
