#pragma once

#include <span>
#include <string>
#include <string_view>

namespace velkin {

/// Entries of the notes, plain text. What is special in HTML is escaped.
using NoteEntries = std::span<const std::string_view>;

/// A title and its bulleted list as HTML; the empty text for an empty list.
std::string getBulletedHtmlSection(std::string_view title, NoteEntries items);
std::string getReleaseFeatures(NoteEntries features);
std::string getReleaseFixes(NoteEntries fixes);
/// One build's section of the page.
std::string getReleaseNotes(std::string_view version, NoteEntries features, NoteEntries fixes);

/// The running build's notes. `shortVersion` is the bundle's version, such as "1.0.0", and `build` its build
/// number.
std::string releaseNotesText(std::string_view shortVersion, std::string_view build);
/// The notes of all builds, the running one's first.
std::string debugNotesText(std::string_view shortVersion, std::string_view build);

/// What the page begins with, down to the end of its styles.
std::string_view releaseNotesHead(bool isDarkMode) noexcept;
/// The whole page: of the running build, or of all of them when the additional views are on.
std::string releaseNotesPage(std::string_view shortVersion, std::string_view build, bool isDarkMode,
                             bool hemingwayEnabled);

}  // namespace velkin
