#pragma once

#include <span>
#include <string_view>

namespace velkin {

/// What a build brought. Each entry is one line of plain text: area, colon, sentence.
struct BuildNotes {
  int build;
  std::span<const std::string_view> features;
  std::span<const std::string_view> fixes;
};

/// The running build's notes.
const BuildNotes& currentBuildNotes() noexcept;
/// Those of the builds before it, the latest first.
std::span<const BuildNotes> earlierBuildNotes() noexcept;

}  // namespace velkin
