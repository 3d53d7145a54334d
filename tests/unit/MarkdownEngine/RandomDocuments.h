#pragma once

#include <cstdint>
#include <random>
#include <string>

namespace markdown::tests {

/// Makes documents by chance, the same ones for the same number to start with. The pieces are the engine's
/// own: what opens, closes, escapes and ends things, with a little text between, so that a short document
/// already holds odd meetings.
class RandomDocuments {
 public:
  explicit RandomDocuments(std::uint32_t start) : random_(start) {}

  /// Up to `maxPieces` pieces behind one another, valid UTF-8.
  [[nodiscard]] std::string next(std::size_t maxPieces);

 private:
  [[nodiscard]] std::size_t below(std::size_t limit) { return random_() % limit; }

  std::mt19937 random_;
};

}  // namespace markdown::tests
