#include "Keyboard/KeyboardShortcuts.h"
#include "Keyboard/QKKeyboardShortcuts.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/NSNotificationCenter.h"

#include <any>
#include <string>
#include <unordered_set>
#include <vector>

#include <gtest/gtest.h>

namespace velkin::KeyboardShortcuts {
namespace {

using Strings = std::vector<std::string>;

const char* const storedT = R"({"carbonKeyCode":17,"carbonModifiers":768})";
const char* const storedG = R"({"carbonKeyCode":5,"carbonModifiers":256})";

class KeyboardShortcutsTest : public testing::Test {
 protected:
  ~KeyboardShortcutsTest() override { shutDown(); }

  std::optional<platform::PropertyListValue> stored(const std::string& name) const {
    return desktop.userDefaults.valueForKey("KeyboardShortcuts_" + name);
  }
  void store(const std::string& name, platform::PropertyListValue value) {
    desktop.userDefaults.setObject(std::move(value), "KeyboardShortcuts_" + name);
  }
  Action note(std::string text) {
    return [this, text = std::move(text)] { told.push_back(text); };
  }
  int press(const Shortcut& shortcut) { return desktop.keyboard.press(shortcut.combination()); }
  int release(const Shortcut& shortcut) { return desktop.keyboard.release(shortcut.combination()); }
  bool isRegistered(const Shortcut& shortcut) const {
    return desktop.keyboard.isRegistered(shortcut.combination());
  }

  platform::HeadlessPlatform desktop;
  Strings told;
  const Shortcut t{17, 768};
  const Shortcut r{15, 768};
  const Shortcut g{5, 256};
};

TEST_F(KeyboardShortcutsTest, ANameWithADefaultStoresItOnce) {
  const Name name("n", t);
  EXPECT_EQ(stored("n"), platform::PropertyListValue(storedT));
  EXPECT_EQ(name.shortcut(), t);
  const Name laterVersion("n", g);
  EXPECT_EQ(laterVersion.shortcut(), t) << "a default that changes reaches only those without an entry";
  EXPECT_EQ(desktop.userDefaults.changedKeys().size(), 1U);
}

TEST_F(KeyboardShortcutsTest, ANameWithoutADefaultStoresNothing) {
  const Name name("n");
  EXPECT_EQ(stored("n"), std::nullopt);
  EXPECT_EQ(name.shortcut(), std::nullopt);
  EXPECT_FALSE(userDefaultsContains(name));
}

TEST_F(KeyboardShortcutsTest, NamesAreEqualByTheirValue) {
  EXPECT_EQ(Name("n", t), Name("n", t));
  EXPECT_NE(Name("n", t), Name("m", t));
  EXPECT_NE(Name("n", t), Name("n"));
  EXPECT_EQ((std::unordered_set<Name>{Name("n", t), Name("n", t), Name("m", t)}.size()), 2U);
}

TEST_F(KeyboardShortcutsTest, TheProgramsNamesHaveTheirDefaults) {
  EXPECT_EQ(Name::popUpShortcut().shortcut()->description(), "⇧⌘T");
  EXPECT_EQ(Name::searchBarShortcut().shortcut()->description(), "⇧⌘R");
  EXPECT_EQ(stored("popUpShortcut"), platform::PropertyListValue(storedT));
  EXPECT_EQ(stored("searchBarShortcut"),
            platform::PropertyListValue(R"({"carbonKeyCode":15,"carbonModifiers":768})"));
}

TEST_F(KeyboardShortcutsTest, ANameIsTellableToPeople) {
  EXPECT_EQ(Name::popUpShortcut().title(), "Open or close the popover");
  EXPECT_EQ(Name::searchBarShortcut().title(), "Open or close the search bar");
  EXPECT_EQ(Name("other").title(), "other");
  EXPECT_EQ(desktop.keyboard.descriptions[t.combination()],
            (platform::HeadlessEventTarget::Description{"popUpShortcut", "Open or close the popover"}));
}

TEST_F(KeyboardShortcutsTest, ACorruptEntryIsNoShortcutAndStays) {
  store("n", "{\"carbonKeyCode\":");
  const Name name("n", t);
  EXPECT_EQ(name.shortcut(), std::nullopt);
  EXPECT_EQ(stored("n"), platform::PropertyListValue("{\"carbonKeyCode\":"));
  onKeyDown(name, note("down"));
  EXPECT_TRUE(desktop.keyboard.registrations.empty());
}

TEST_F(KeyboardShortcutsTest, AnEntryOfAnotherTypeIsNoShortcut) {
  for (const auto& value : {platform::PropertyListValue(17), platform::PropertyListValue(true)}) {
    store("n", value);
    EXPECT_EQ(Name("n", t).shortcut(), std::nullopt);
  }
}

TEST_F(KeyboardShortcutsTest, NothingDisablesANameWithADefaultForGood) {
  const Name name("n", t);
  setShortcut(std::nullopt, name);
  EXPECT_EQ(stored("n"), platform::PropertyListValue(false));
  EXPECT_EQ(name.shortcut(), std::nullopt);
  EXPECT_FALSE(isRegistered(t));
  EXPECT_TRUE(userDefaultsContains(name));
  const Name again("n", t);
  EXPECT_EQ(again.shortcut(), std::nullopt) << "the default came back";
  EXPECT_EQ(stored("n"), platform::PropertyListValue(false));
}

TEST_F(KeyboardShortcutsTest, NothingRemovesANameWithoutADefault) {
  const Name name("n");
  setShortcut(g, name);
  EXPECT_EQ(stored("n"), platform::PropertyListValue(storedG));
  setShortcut(std::nullopt, name);
  EXPECT_EQ(stored("n"), std::nullopt);
  EXPECT_FALSE(isRegistered(g));
}

TEST_F(KeyboardShortcutsTest, NothingChangesNothingWhereThereIsNoShortcut) {
  store("n", false);
  const Name withDefault("n", t);
  const Name without("m");
  int posts = 0;
  const auto token = platform::NSNotificationCenter::defaultCenter().addObserver(
      shortcutByNameDidChange, [&](const auto&) { ++posts; });
  const auto before = desktop.userDefaults.changedKeys().size();
  setShortcut(std::nullopt, withDefault);
  setShortcut(std::nullopt, without);
  EXPECT_EQ(posts, 0);
  EXPECT_EQ(desktop.userDefaults.changedKeys().size(), before);
}

TEST_F(KeyboardShortcutsTest, TheNewOneIsRegisteredBeforeItIsStoredAndTheOldOneIsLetGoFirst) {
  const Name name("n", t);
  Strings order;
  desktop.keyboard.onChange = [&] {
    std::string line = stored("n") == platform::PropertyListValue(storedT) ? "T stored:" : "G stored:";
    if (isRegistered(t)) line += " T";
    if (isRegistered(g)) line += " G";
    order.push_back(line);
  };
  const auto token =
      platform::NSNotificationCenter::defaultCenter().addObserver(shortcutByNameDidChange, [&](const auto&) {
        order.push_back(stored("n") == platform::PropertyListValue(storedG) ? "posted G" : "posted T");
      });
  setShortcut(g, name);
  desktop.keyboard.onChange = nullptr;
  EXPECT_EQ(order, (Strings{"T stored:", "T stored: G", "posted G"}));
}

TEST_F(KeyboardShortcutsTest, EachWriteIsPostedWithItsName) {
  std::vector<Name> names;
  const auto token = platform::NSNotificationCenter::defaultCenter().addObserver(
      "KeyboardShortcuts_shortcutByNameDidChange", [&](const platform::NSNotification& notification) {
        EXPECT_EQ(notification.userInfo.size(), 1U);
        names.push_back(std::any_cast<Name>(notification.userInfo.at("name")));
      });
  const Name withDefault("n", t);
  const Name without("m");
  setShortcut(g, without);
  setShortcut(std::nullopt, without);
  setShortcut(std::nullopt, withDefault);
  EXPECT_EQ(names, (std::vector<Name>{withDefault, without, without, withDefault}));
}

TEST_F(KeyboardShortcutsTest, AnObserverThatIsGoneHearsNothing) {
  int posts = 0;
  auto token = platform::NSNotificationCenter::defaultCenter().addObserver(shortcutByNameDidChange,
                                                                           [&](const auto&) { ++posts; });
  const Name name("n", t);
  token.end();
  setShortcut(g, name);
  EXPECT_EQ(posts, 1);
}

TEST_F(KeyboardShortcutsTest, ResetPutsTheDefaultsBack) {
  const Name withDefault("n", t);
  const Name disabled("d", r);
  const Name without("m");
  setShortcut(std::nullopt, disabled);
  setShortcut(g, withDefault);
  setShortcut(g, without);
  reset(withDefault, disabled, without);
  EXPECT_EQ(withDefault.shortcut(), t);
  EXPECT_EQ(disabled.shortcut(), r);
  EXPECT_EQ(without.shortcut(), std::nullopt);
  EXPECT_EQ(registeredShortcuts(), (std::set<Shortcut>{t, r}));
  setShortcut(g, withDefault);
  reset(std::vector<Name>{withDefault});
  EXPECT_EQ(withDefault.shortcut(), t);
}

TEST_F(KeyboardShortcutsTest, DisablingUnregistersAndKeepsWhatIsStored) {
  const Name name("n", t);
  disable(name);
  EXPECT_FALSE(isRegistered(t));
  EXPECT_EQ(name.shortcut(), t);
  enable(name);
  EXPECT_TRUE(isRegistered(t));
  EXPECT_EQ(desktop.userDefaults.changedKeys().size(), 1U);
}

TEST_F(KeyboardShortcutsTest, AShortcutIsRegisteredOnce) {
  const Name name("n", t);
  onKeyDown(name, note("a"));
  onKeyUp(name, note("b"));
  enable(name);
  EXPECT_EQ(desktop.keyboard.registrations.size(), 1U);
}

TEST_F(KeyboardShortcutsTest, ActionsRunInTheirOrderDownAndUpApart) {
  const Name name("n", t);
  onKeyDown(name, note("first"));
  onKeyDown(name, note("second"));
  onKeyUp(name, note("up"));
  EXPECT_EQ(press(t), 1);
  EXPECT_EQ(told, (Strings{"first", "second"}));
  EXPECT_EQ(release(t), 1);
  EXPECT_EQ(told, (Strings{"first", "second", "up"}));
  EXPECT_EQ(press(g), 0);
}

TEST_F(KeyboardShortcutsTest, AnActionForANameWithoutAShortcutWaitsForOne) {
  const Name name("n");
  onKeyDown(name, note("down"));
  EXPECT_TRUE(desktop.keyboard.registrations.empty());
  setShortcut(g, name);
  press(g);
  EXPECT_EQ(told, Strings{"down"});
}

TEST_F(KeyboardShortcutsTest, AChangedShortcutActsAndTheOldOneNoLonger) {
  const Name name("n", t);
  onKeyDown(name, note("down"));
  setShortcut(g, name);
  EXPECT_EQ(press(t), 0);
  EXPECT_EQ(press(g), 1);
  EXPECT_EQ(told, Strings{"down"});
}

TEST_F(KeyboardShortcutsTest, AnEventComparesWithWhatIsStoredThen) {
  const Name name("n", t);
  onKeyDown(name, note("down"));
  store("n", storedG);
  EXPECT_EQ(press(t), 1);
  EXPECT_EQ(told, Strings{});
}

TEST_F(KeyboardShortcutsTest, TwoNamesWithOneShortcutBothAct) {
  const Name first("a", t);
  const Name second("b", t);
  onKeyDown(first, note("a"));
  onKeyDown(second, note("b"));
  EXPECT_EQ(desktop.keyboard.registrations.size(), 1U);
  press(t);
  EXPECT_EQ(told, (Strings{"a", "b"}));
}

TEST_F(KeyboardShortcutsTest, OneUnregistrationTakesASharedShortcutFromBoth) {
  const Name first("a", t);
  const Name second("b", t);
  onKeyDown(first, note("a"));
  onKeyDown(second, note("b"));
  setShortcut(std::nullopt, first);
  EXPECT_EQ(press(t), 0);
  EXPECT_EQ(second.shortcut(), t);
}

TEST_F(KeyboardShortcutsTest, WhilePausedKeysArriveAndNothingActs) {
  const Name name("n", t);
  onKeyDown(name, note("down"));
  onKeyUp(name, note("up"));
  EXPECT_FALSE(isPaused());
  setIsPaused(true);
  EXPECT_EQ(press(t), 1);
  EXPECT_EQ(release(t), 1);
  EXPECT_EQ(told, Strings{});
  setIsPaused(false);
  press(t);
  release(t);
  EXPECT_EQ(told, (Strings{"down", "up"}));
}

TEST_F(KeyboardShortcutsTest, ARefusedShortcutIsSilentAndNotTriedAgain) {
  desktop.keyboard.heldByOthers = {t.combination()};
  const Name name("n", t);
  onKeyDown(name, note("down"));
  EXPECT_EQ(stored("n"), platform::PropertyListValue(storedT));
  EXPECT_TRUE(desktop.keyboard.registrations.empty());
  desktop.keyboard.heldByOthers.clear();
  enable(name);
  EXPECT_TRUE(desktop.keyboard.registrations.empty());
}

TEST_F(KeyboardShortcutsTest, StreamsTellOfTheirEventsBehindTheActions) {
  const Name name("n", t);
  const auto both =
      events(name, [this](EventType type) { told.push_back(type == EventType::keyDown ? "d" : "u"); });
  const auto downs = events(EventType::keyDown, name, [this](EventType type) {
    told.push_back(type == EventType::keyDown ? "D" : "?");
  });
  const auto ups = on(EventType::keyUp, name, note("U"));
  onKeyDown(name, note("action"));
  press(t);
  EXPECT_EQ(told, (Strings{"action", "d", "D"}));
  told.clear();
  release(t);
  EXPECT_EQ(told, (Strings{"u", "U"}));
}

TEST_F(KeyboardShortcutsTest, AStreamEndsWithItsObject) {
  const Name name("n");
  setShortcut(g, name);
  {
    auto stream = on(EventType::keyDown, name, note("x"));
    auto moved = std::move(stream);
    press(g);
    EXPECT_EQ(told, Strings{"x"});
    EXPECT_EQ(shortcutsForStreamHandlers(), (std::set<Shortcut>{g}));
  }
  EXPECT_TRUE(shortcutsForStreamHandlers().empty());
  EXPECT_FALSE(isRegistered(g)) << "nobody needed it any more";
}

TEST_F(KeyboardShortcutsTest, AStreamsEndKeepsAShortcutThatOthersNeed) {
  const Name name("n", t);
  auto first = on(EventType::keyDown, name, note("first"));
  auto second = on(EventType::keyUp, name, note("second"));
  first.end();
  EXPECT_TRUE(isRegistered(t));
  onKeyUp(name, note("action"));
  second = {};
  EXPECT_TRUE(isRegistered(t));
  release(t);
  EXPECT_EQ(told, Strings{"action"});
}

TEST_F(KeyboardShortcutsTest, AStreamThatAnActionEndsHearsNothingMore) {
  const Name name("n", t);
  auto stream = on(EventType::keyDown, name, note("stream"));
  onKeyDown(name, [&] { stream.end(); });
  press(t);
  EXPECT_EQ(told, Strings{});
}

TEST_F(KeyboardShortcutsTest, AnActionMayChangeTheShortcutItself) {
  const Name name("n", t);
  onKeyDown(name, [&] { setShortcut(g, name); });
  onKeyDown(name, note("second"));
  press(t);
  EXPECT_EQ(name.shortcut(), g);
  EXPECT_EQ(told, Strings{"second"}) << "the press was for this name, and its actions run to the end";
}

TEST_F(KeyboardShortcutsTest, ShortcutsForHandlersAreThoseOfAllTables) {
  const Name a("a", t);
  const Name b("b", r);
  const Name c("c", g);
  onKeyDown(a, note(""));
  onKeyUp(b, note(""));
  const auto stream = on(EventType::keyUp, c, note(""));
  const Name unused("d", Shortcut(1, 256));
  EXPECT_EQ(shortcutsForLegacyHandlers(), (std::set<Shortcut>{t, r}));
  EXPECT_EQ(shortcutsForStreamHandlers(), (std::set<Shortcut>{g}));
  EXPECT_EQ(shortcutsForHandlers(), (std::set<Shortcut>{t, r, g}));
}

TEST_F(KeyboardShortcutsTest, RemovingAllHandlersKeepsWhatStreamsNeed) {
  const Name a("a", t);
  const Name b("b", r);
  onKeyDown(a, note("a"));
  onKeyUp(b, note("b"));
  const auto stream = on(EventType::keyDown, b, note("stream"));
  removeAllHandlers();
  EXPECT_FALSE(isRegistered(t));
  EXPECT_TRUE(isRegistered(r));
  press(r);
  release(r);
  EXPECT_EQ(told, Strings{"stream"});
  EXPECT_TRUE(shortcutsForLegacyHandlers().empty());
}

TEST_F(KeyboardShortcutsTest, TheReferenceShowsWhatIsStored) {
  using enum QKKeyboardShortcuts;
  EXPECT_EQ(keyEquivalent(keyboardShortcut), "⇧⌘T");
  EXPECT_EQ(keyEquivalent(QKKeyboardShortcuts::searchBarShortcut), "⇧⌘R");
  EXPECT_EQ(rawValue(keyboardShortcut), "PopUp");
  EXPECT_EQ(rawValue(QKKeyboardShortcuts::searchBarShortcut), "SearchBar");
  setShortcut(g, Name::searchBarShortcut());
  EXPECT_EQ(getDisplayString(keyEquivalent(QKKeyboardShortcuts::searchBarShortcut),
                             QKKeyboardShortcutCategory::global),
            "⌘G");
  setShortcut(std::nullopt, Name::popUpShortcut());
  EXPECT_EQ(keyEquivalent(keyboardShortcut), "") << "a cleared one shows nothing";
}

}  // namespace
}  // namespace velkin::KeyboardShortcuts
