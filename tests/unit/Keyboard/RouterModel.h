#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace velkin {

/// The key router once more, as slow and as literal as can be: names instead of tables of members, one test
/// after the other. What it calls, it writes down.
class RouterModel {
 public:
  bool hemingwayEnabled = false;
  bool experimentalEnabled = false;
  bool isOnboarding = false;
  bool isSearchBarOpen = false;
  bool hasStatusMenu = false;
  /// Whether what has the keyboard takes edit actions.
  bool takesActions = false;

  std::vector<std::string> calls;
  std::map<std::string, bool> flags;

  void flagsChanged(bool command, bool control, bool shift, bool option) {
    flags["Command"] = command;
    flags["Control"] = control;
    flags["Shift"] = shift;
    flags["Option"] = option;
  }

  void keyUp(int code, bool command, bool control, bool shift, bool option) {
    if (code == 0x38 || code == 0x3C || !shift) flags["Shift"] = false;
    if (code == 0x3B || code == 0x3E || !control) flags["Control"] = false;
    if (code == 0x37 || code == 0x36 || !command) flags["Command"] = false;
    if (code == 0x3A || code == 0x3D || !option) flags["Option"] = false;
    for (const char* name :
         {"Command", "Shift", "Comma", "A", "F", "O", "P", "R", "S", "Q",    "Zero", "Plus",  "Minus", "Up",
          "Down",    "Left",  "Right", "B", "D", "G", "H", "J", "T", "PgUp", "PgDn", "Enter", "Esc"}) {
      if (flags[name]) {
        clearKeys();
        return;
      }
    }
  }

  /// True if the key is consumed.
  bool keyDown(int code, bool eventHasCommand, const std::string& characters) {
    // Edit commands.
    if (eventHasCommand) flags["Command"] = true;
    if (commandOnly()) {
      if (characters == "x" && send("cut:")) return true;
      if (characters == "c" && send("copy:")) return true;
      if (characters == "v" && send("paste:")) return true;
      if (characters == "a" && send("selectAll:")) return true;
      if (characters == "z" && send("undo:")) return true;
    }
    if ((commandOnly() || commandShift()) && characters == "z") {
      if (send(flags["Shift"] ? "redo:" : "undo:")) return true;
    }
    // Recording.
    if (code == 0x35) {
      calls.push_back("handleEsc");
      return true;
    }
    const std::map<int, std::string> names = {{0x12, "1"},     {0x13, "2"},           {0x14, "3"},
                                              {0x15, "4"},     {0x00, "A"},           {0x0B, "B"},
                                              {0x02, "D"},     {0x03, "F"},           {0x05, "G"},
                                              {0x04, "H"},     {0x26, "J"},           {0x2E, "M"},
                                              {0x1F, "O"},     {0x0C, "Q"},           {0x0F, "R"},
                                              {0x01, "S"},     {0x11, "T"},           {0x23, "P"},
                                              {0x2B, "Comma"}, {0x21, "LeftBracket"}, {0x1E, "RightBracket"},
                                              {0x1D, "Zero"},  {0x18, "Plus"},        {0x1B, "Minus"},
                                              {0x7E, "Up"},    {0x7D, "Down"},        {0x7B, "Left"},
                                              {0x7C, "Right"}, {0x74, "PgUp"},        {0x79, "PgDn"}};
    if (names.count(code) != 0) {
      flags[names.at(code)] = true;
    } else if ((code == 0x4C || code == 0x24) && experimentalEnabled && !isSearchBarOpen) {
      flags["Enter"] = true;
    } else if (code == 0x37 || code == 0x36) {
      flags["Command"] = true;
    } else if (code == 0x3A || code == 0x3D) {
      flags["Option"] = true;
    } else if (code == 0x3B || code == 0x3E) {
      flags["Control"] = true;
    } else if (code == 0x38 || code == 0x3C) {
      flags["Shift"] = true;
    } else if (code == 0x33) {
      if (send("deleteBackward:")) return true;
    } else if (code == 0x75) {
      if (send("deleteForward:")) return true;
    } else {
      return false;
    }
    return combination();
  }

 private:
  bool send(const std::string& selector) {
    calls.push_back(selector);
    return takesActions;
  }
  bool only(bool command, bool option, bool control, bool shift) {
    return flags["Command"] == command && flags["Option"] == option && flags["Control"] == control &&
           flags["Shift"] == shift;
  }
  bool commandOnly() { return only(true, false, false, false); }
  bool commandShift() { return only(true, false, false, true); }
  bool commandOption() { return only(true, true, false, false); }
  bool commandControl() { return only(true, false, true, false); }

  void clearKeys() {
    for (auto& [name, value] : flags) {
      if (name != "Command" && name != "Control" && name != "Option" && name != "Shift") value = false;
    }
  }

  bool done(const std::string& call) {
    calls.push_back(call);
    return true;
  }
  bool resized(const std::string& call) {
    if (!isOnboarding) calls.push_back(call);
    return true;
  }

  bool combination() {
    if (commandOnly() && flags["Q"]) return done("quitClicked");
    if (commandShift() && flags["A"]) return done("appearanceClicked");
    if (commandOnly() && flags["F"]) return done("handleWindowFindOnPage");
    if (commandOnly() && flags["1"]) return done("handleSideGroupClick 1");
    if (commandOnly() && flags["2"]) return done("handleSideGroupClick 2");
    if (commandOnly() && flags["3"]) return done("handleSideGroupClick 3");
    if (commandOnly() && flags["4"]) return done("handleSideGroupClick 4");
    if (commandOnly() && flags["P"]) return done("handlePrintAction");
    if (commandOnly() && flags["S"]) return done("handleScreenCaptureAction");
    if (commandShift() && flags["S"]) return done("stickyClicked");
    if (commandOption() && flags["T"]) return done("toolbarClicked");
    if (commandOnly() && flags["LeftBracket"]) return done("handleBack");
    if (commandOnly() && flags["RightBracket"]) return done("handleForward");
    if (flags["Command"] && flags["R"] && !flags["Shift"] && !flags["Option"] && !flags["Control"]) {
      return done("reloadClicked");
    }
    if (flags["Command"] && flags["R"] && flags["Option"] && !flags["Shift"] && !flags["Control"]) {
      return done("handleReloadFromOrigin");
    }
    const bool isEasterEggView = hemingwayEnabled && commandOnly();
    if (isEasterEggView && flags["B"]) return done("switchWebViewsClicked 2");
    if (isEasterEggView && flags["D"]) return done("switchWebViewsClicked 1");
    if (isEasterEggView && flags["G"]) return done("switchWebViewsClicked 3");
    if (isEasterEggView && flags["H"]) return done("switchWebViewsClicked 4");
    if (isEasterEggView && flags["J"]) return done("switchWebViewsClicked 5");
    if (isEasterEggView && flags["M"]) return done("switchWebViewsClicked 6");
    if (isEasterEggView && flags["T"]) return done("switchWebViewsClicked 0");
    if (flags["Shift"] && flags["Command"] && flags["Control"] && flags["D"] && hemingwayEnabled) {
      return done("handleWindowBardOnPage");
    }
    const bool isSideBar = hemingwayEnabled && commandControl();
    if (isSideBar && flags["B"]) return done("handleWindowBitBucketOnPage");
    if (isSideBar && flags["T"]) return done("handleWindowChatOnPage");
    if (isSideBar && flags["G"]) return done("handleWindowGitLabOnPage");
    if (isSideBar && flags["H"]) return done("handleWindowHemingwayOnPage");
    if (isSideBar && flags["J"]) return done("handleWindowJiraOnPage");
    if (isSideBar && flags["M"]) return done("handleWindowMarkdownOnPage");
    if (commandOnly() && flags["Zero"]) return done("handleZoomActual");
    if (commandOnly() && flags["Plus"]) return done("handleZoomIn");
    if (commandOnly() && flags["Minus"]) return done("handleZoomOut");
    if (commandControl() && flags["F"]) return done("handleWindowFullScreen");
    if (commandControl() && flags["Up"]) return resized("handleWindowTaller");
    if (commandControl() && flags["Down"]) return resized("handleWindowShorter");
    if (commandControl() && flags["Left"]) return resized("handleWindowSlimmer");
    if (commandControl() && flags["Right"]) return resized("handleWindowWider");
    if (flags["PgUp"]) return done("handlePageUp");
    if (flags["PgDn"]) return done("handlePageDown");
    if (flags["Enter"]) return done("handleEnter");
    if (flags["Command"] && flags["Comma"]) {
      if (!hasStatusMenu) {
        calls.push_back("handlePopOverBehaviorUpdate true");
        calls.push_back("preferencesClicked");
      }
      return true;
    }
    return false;
  }
};

}  // namespace velkin
