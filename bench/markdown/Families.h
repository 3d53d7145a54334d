#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Inputs that make careless readers slow: one piece over and over.
struct Family {
  std::string name;
  std::string piece;
};

[[nodiscard]] const std::vector<Family>& families();

/// Documents of about `size` bytes.
[[nodiscard]] std::string repeated(const std::string& piece, std::size_t size);
/// Every list item nested in the one before, each a blank deeper.
[[nodiscard]] std::string deeperAndDeeperLists(std::size_t size);
/// The same with a second item of each list after all the openings.
[[nodiscard]] std::string deeperAndShallowerLists(std::size_t size);
