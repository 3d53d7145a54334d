#include "ReleaseNotes/ReleaseNotesText.h"

#include "ReleaseNotes/BuildNotes.h"

namespace velkin {

namespace {

constexpr std::string_view darkHead = R"(<html><head><body><h1>Release Notes</h1>
<style>
  body {
    background-color: #333344;
    color: lightgray;
    font-family: system-ui, sans-serif;
    margin: 1.5em;
  }
</style>
)";

constexpr std::string_view lightHead = R"(<html><head><body><h1>Release Notes</h1>
<style>
  body {
    background-color: #DDDDEE;
    color: #333344;
    font-family: system-ui, sans-serif;
    margin: 1.5em;
  }
</style>
)";

std::string escaped(std::string_view text) {
  std::string result;
  for (const char character : text) {
    if (character == '&') {
      result += "&amp;";
    } else if (character == '<') {
      result += "&lt;";
    } else if (character == '>') {
      result += "&gt;";
    } else {
      result += character;
    }
  }
  return result;
}

std::string notesOf(const BuildNotes& notes, std::string_view version) {
  return getReleaseNotes(version, notes.features, notes.fixes);
}

}  // namespace

std::string getBulletedHtmlSection(std::string_view title, NoteEntries items) {
  if (items.empty()) return {};
  std::string section = "<h3>";
  section.append(title).append(":</h3>\n<ul>\n  ");
  for (const auto item : items) section.append("<li>").append(escaped(item)).append("</li>");
  return section.append("\n</ul>");
}

std::string getReleaseFeatures(NoteEntries features) { return getBulletedHtmlSection("✨Features", features); }

std::string getReleaseFixes(NoteEntries fixes) { return getBulletedHtmlSection("🛠Fixes", fixes); }

std::string getReleaseNotes(std::string_view version, NoteEntries features, NoteEntries fixes) {
  std::string notes = "<h1><br></h1>\n<h2>";
  notes.append(version).append(":</h2>\n").append(getReleaseFeatures(features)).append("\n");
  return notes.append(getReleaseFixes(fixes));
}

std::string releaseNotesText(std::string_view shortVersion, std::string_view build) {
  std::string version(shortVersion);
  version.append(" (").append(build).append(") ").append(" :-)");
  return notesOf(currentBuildNotes(), version);
}

std::string debugNotesText(std::string_view shortVersion, std::string_view build) {
  auto text = releaseNotesText(shortVersion, build);
  for (const auto& notes : earlierBuildNotes()) {
    text.append("\n").append(notesOf(notes, "Build " + std::to_string(notes.build)));
  }
  return text;
}

std::string_view releaseNotesHead(bool isDarkMode) noexcept { return isDarkMode ? darkHead : lightHead; }

std::string releaseNotesPage(std::string_view shortVersion, std::string_view build, bool isDarkMode,
                             bool hemingwayEnabled) {
  std::string page(releaseNotesHead(isDarkMode));
  page += hemingwayEnabled ? debugNotesText(shortVersion, build) : releaseNotesText(shortVersion, build);
  return page.append("</body></html>");
}

}  // namespace velkin
