#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/View/ObservableObject.h"
#include "Platform/View/State.h"
#include "Platform/View/ViewHost.h"

#include <algorithm>
#include <thread>

#include <gtest/gtest.h>

namespace platform {
namespace {

class ViewHostTest : public testing::Test {
 protected:
  HeadlessPlatform desktop;
};

struct Counter {
  State<int> count{0};

  View body() const {
    return VStack({Text("Count " + std::to_string(count.get())),
                   Button("More", [count = count] { count.set(count.get() + 1); })});
  }
};

struct Pair {
  State<bool> isSwapped{false};
  State<bool> hasTitle{false};

  View body() const {
    return VStack({when(hasTitle.get(), [] { return Text("Title"); }), Counter{},
                   Button("Title on", [hasTitle = hasTitle] { hasTitle.set(true); })});
  }
};

template <class V>
std::unique_ptr<HeadlessHostingView> hosted(V view) {
  return std::make_unique<HeadlessHostingView>(View(std::move(view)));
}

TEST_F(ViewHostTest, ShowsWhatTheBodyDescribes) {
  const auto tree = hosted(Counter{});
  EXPECT_TRUE(tree->showsText("Count 0"));
  EXPECT_NE(tree->control("More"), nullptr);
}

TEST_F(ViewHostTest, AChangeOfStateRedrawsInALaterTurn) {
  const auto tree = hosted(Counter{});
  tree->control("More")->press();
  EXPECT_TRUE(tree->showsText("Count 0"));
  desktop.queue.drain();
  EXPECT_TRUE(tree->showsText("Count 1"));
}

TEST_F(ViewHostTest, ChangesOfOneTurnAreDrawnTogether) {
  const auto tree = hosted(Counter{});
  auto* text = tree->all<TextContent>().front();
  const int before = text->updateCount;
  for (int i = 0; i < 5; ++i) tree->control("More")->press();
  desktop.queue.drain();
  EXPECT_TRUE(tree->showsText("Count 5"));
  EXPECT_EQ(text->updateCount, before + 1);
}

TEST_F(ViewHostTest, SettingAnEqualValueRedrawsNothing) {
  Counter counter;
  const auto tree = hosted(counter);
  auto* text = tree->all<TextContent>().front();
  const int before = text->updateCount;
  counter.count.set(0);
  desktop.queue.drain();
  EXPECT_EQ(text->updateCount, before);
}

TEST_F(ViewHostTest, StateMaySurviveItsViewsBeingBuiltAgain) {
  const auto tree = hosted(Pair{});
  tree->control("More")->press();
  desktop.queue.drain();
  ASSERT_TRUE(tree->showsText("Count 1"));
  tree->control("Title on")->press();
  desktop.queue.drain();
  EXPECT_TRUE(tree->showsText("Title"));
  EXPECT_TRUE(tree->showsText("Count 1"));
}

TEST_F(ViewHostTest, AnAbsentViewKeepsThePositionsOfItsSiblings) {
  const auto tree = hosted(Pair{});
  const auto* counterText = tree->all<TextContent>().front();
  tree->control("Title on")->press();
  desktop.queue.drain();
  const auto texts = tree->all<TextContent>();
  ASSERT_EQ(texts.front()->text(), "Title");
  EXPECT_EQ(texts[1], counterText);
}

TEST_F(ViewHostTest, StateMayBeSetOnAnotherThread) {
  Counter counter;
  const auto tree = hosted(counter);
  std::thread([count = counter.count] { count.set(7); }).join();
  EXPECT_TRUE(tree->showsText("Count 0"));
  desktop.queue.drain();
  EXPECT_TRUE(tree->showsText("Count 7"));
}

TEST_F(ViewHostTest, AHostThatIsGoneIsNotRedrawn) {
  Counter counter;
  auto tree = hosted(counter);
  counter.count.set(3);
  tree.reset();
  desktop.queue.drain();
  counter.count.set(4);
  desktop.queue.drain();
  EXPECT_EQ(counter.count.get(), 4);
}

class Model : public ObservableObject {
 public:
  Published<bool> isOn{*this, false};
};

struct Observer {
  ObservedObject<Model> model;
  std::string name;

  View body() const { return Text(name + (model->isOn.get() ? " on" : " off")); }
};

struct Observers3 {
  std::shared_ptr<Model> model;

  View body() const {
    return HStack({Observer{model, "a"}, VStack({Observer{model, "b"}}), Observer{model, "c"}});
  }
};

TEST_F(ViewHostTest, AChangedFlagRedrawsAllObserversOfTheOneInstance) {
  const auto model = std::make_shared<Model>();
  const auto tree = hosted(Observers3{model});
  model->isOn.set(true);
  desktop.queue.drain();
  EXPECT_TRUE(tree->showsText("a on"));
  EXPECT_TRUE(tree->showsText("b on"));
  EXPECT_TRUE(tree->showsText("c on"));
}

TEST_F(ViewHostTest, APublishedFieldHasAPublisherOfItsOwn) {
  Model model;
  int changes = 0;
  const auto subscription = model.isOn.subscribe([&] { ++changes; });
  model.isOn.set(true);
  model.isOn.set(true);
  EXPECT_EQ(changes, 1);
}

struct Field {
  State<std::string> text{std::string("first")};
  State<int> commits{0};

  View body() const {
    return VStack({TextField("Name", text.binding(), {.onCommit = [c = commits] { c.set(c.get() + 1); }}),
                   Text(text.get() + std::to_string(commits.get()))});
  }
};

TEST_F(ViewHostTest, ATextFieldWritesItsBindingAndTellsOfReturn) {
  const auto tree = hosted(Field{});
  auto* field = tree->field("Name");
  ASSERT_NE(field, nullptr);
  field->type("second");
  field->commit();
  desktop.queue.drain();
  EXPECT_TRUE(tree->showsText("second1"));
  EXPECT_EQ(tree->field("Name"), field);
}

struct Swapping {
  State<bool> isField{false};
  View body() const {
    return VStack({isField.get() ? TextField("Field", Binding<std::string>::constant("")) : Text("Label"),
                   Button("Swap", [isField = isField] { isField.set(!isField.get()); })});
  }
};

TEST_F(ViewHostTest, AnotherKindAtThePositionReplacesTheView) {
  const auto tree = hosted(Swapping{});
  EXPECT_EQ(tree->field("Field"), nullptr);
  tree->control("Swap")->press();
  desktop.queue.drain();
  EXPECT_NE(tree->field("Field"), nullptr);
  EXPECT_FALSE(tree->showsText("Label"));
}

struct Moving {
  std::shared_ptr<NSView> page;
  std::shared_ptr<int> made;
  std::shared_ptr<int> updated;
  State<bool> isLeft{true};

  View host() const {
    return HostedView(
        page.get(),
        [self = *this] {
          ++*self.made;
          return self.page.get();
        },
        [self = *this](NSView&) { ++*self.updated; });
  }
  View body() const {
    return HStack({when(isLeft.get(), [&] { return host(); }), Divider(),
                   when(!isLeft.get(), [&] { return host(); }),
                   Button("Move", [isLeft = isLeft] { isLeft.set(!isLeft.get()); })});
  }
};

TEST_F(ViewHostTest, AHostedViewIsMadeAtItsPlaceAndUpdatedThereAndAtEachRebuild) {
  const Moving moving{std::make_shared<HeadlessWebView>(NSRect{}, WKWebViewConfiguration{}),
                      std::make_shared<int>(0), std::make_shared<int>(0)};
  const auto tree = hosted(moving);
  EXPECT_EQ(*moving.made, 1);
  EXPECT_EQ(*moving.updated, 1);
  tree->control("Move")->press();
  desktop.queue.drain();
  EXPECT_EQ(*moving.made, 2);
  EXPECT_EQ(*moving.updated, 2);
  EXPECT_EQ(tree->all<HostedContent>().size(), 1U);
}

TEST_F(ViewHostTest, AppearAndDisappearAreToldOnce) {
  int appeared = 0;
  int disappeared = 0;
  {
    const HeadlessHostingView tree(
        Text("x").onAppear([&] { ++appeared; }).onDisappear([&] { ++disappeared; }));
    EXPECT_EQ(appeared, 1);
    EXPECT_EQ(disappeared, 0);
  }
  EXPECT_EQ(appeared, 1);
  EXPECT_EQ(disappeared, 1);
}

struct Watching {
  State<int> value{1};
  std::shared_ptr<std::vector<int>> seen;

  View body() const {
    return Text("x").onChange<int>(value.get(), [seen = seen](const int& v) { seen->push_back(v); });
  }
};

TEST_F(ViewHostTest, AChangeHandlerHearsOfChangesOnly) {
  const Watching watching{1, std::make_shared<std::vector<int>>()};
  const auto tree = hosted(watching);
  EXPECT_TRUE(watching.seen->empty());
  watching.value.set(2);
  desktop.queue.drain();
  EXPECT_EQ(*watching.seen, std::vector<int>{2});
}

TEST_F(ViewHostTest, ADisabledControlCantBePressed) {
  int pressed = 0;
  const HeadlessHostingView tree(VStack({Button("Go", [&] { ++pressed; })}).disabled(true));
  tree.control("Go")->press();
  EXPECT_EQ(pressed, 0);
}

TEST_F(ViewHostTest, PaddingLiesInsideABackgroundThatFollowsAndOutsideOneThatStands) {
  const auto view = Text("x").padding(4).background(Color::Role::blue).padding(10);
  EXPECT_EQ(view.element().modifiers.padding, EdgeInsets::all(4));
  EXPECT_EQ(view.element().modifiers.margin, EdgeInsets::all(10));
}

TEST_F(ViewHostTest, AModifierOfAProgramsViewGoesToABoxAroundIt) {
  const auto view = View(Counter{}).frame({.width = 50});
  EXPECT_TRUE(std::holds_alternative<StackContent>(view.element().content));
  EXPECT_EQ(view.element().modifiers.frame.width, 50);
}

struct Bubble {
  State<bool> isOpen{false};
  View body() const {
    return Button("Open", [isOpen = isOpen] { isOpen.set(true); }).popover(isOpen.binding(), [] {
      return Text("Inside");
    });
  }
};

TEST_F(ViewHostTest, ABubblesContentExistsWhileItIsPresented) {
  const auto tree = hosted(Bubble{});
  EXPECT_FALSE(tree->showsText("Inside"));
  tree->control("Open")->press();
  desktop.queue.drain();
  EXPECT_TRUE(tree->showsText("Inside"));
}

struct Row {
  std::string name;
  State<int> count{0};

  View body() const {
    return HStack({Text(name + " " + std::to_string(count.get())),
                   Button("Count " + name, [count = count] { count.set(count.get() + 1); })});
  }
};

struct Rows {
  State<std::vector<std::string>> names{std::vector<std::string>{"a", "b", "c"}};

  View body() const {
    return VStack({ForEach(
        names.get(), [](const std::string& name) { return name; },
        [](const std::string& name) { return Row{name}; })});
  }
};

TEST_F(ViewHostTest, KeyedRowsKeepTheirStateAndTheirPlaceOnTheScreenWhereverTheyMove) {
  Rows rows;
  const auto tree = hosted(rows);
  tree->control("Count a")->press();
  desktop.queue.drain();
  const auto* first = tree->all<TextContent>().front();
  ASSERT_EQ(first->text(), "a 1");
  rows.names.set({"c", "b", "a"});
  desktop.queue.drain();
  EXPECT_EQ(tree->roots().front()->text(), "c 0 Count c b 0 Count b a 1 Count a");
  const auto texts = tree->all<TextContent>();
  EXPECT_NE(std::find(texts.begin(), texts.end(), first), texts.end());
  EXPECT_EQ(first->text(), "a 1");
}

TEST_F(ViewHostTest, ANewKeyedRowTakesNobodysState) {
  Rows rows;
  const auto tree = hosted(rows);
  tree->control("Count a")->press();
  desktop.queue.drain();
  rows.names.set({"new", "a"});
  desktop.queue.drain();
  EXPECT_TRUE(tree->showsText("new 0"));
  EXPECT_TRUE(tree->showsText("a 1"));
  EXPECT_FALSE(tree->showsText("b 0"));
  rows.names.set({"b", "a"});
  desktop.queue.drain();
  EXPECT_TRUE(tree->showsText("b 0"));
}

TEST_F(ViewHostTest, RowsOfTheSameKeyGoOnInTheirOrder) {
  Rows rows;
  rows.names.set({"x", "x"});
  const auto tree = hosted(rows);
  tree->control("Count x")->press();
  desktop.queue.drain();
  rows.names.set({"new", "x", "x"});
  desktop.queue.drain();
  EXPECT_EQ(tree->roots().front()->text(), "new 0 Count new x 1 Count x x 0 Count x");
  rows.names.set({});
  desktop.queue.drain();
  EXPECT_EQ(tree->roots().front()->text(), "");
}

/// Remembers the rows that a grid is given.
class GridRecorder : public RenderedView {
 public:
  explicit GridRecorder(const Element& element) { GridRecorder::update(element); }
  void update(const Element& element) override {
    const auto* text = std::get_if<TextContent>(&element.content);
    name = text != nullptr ? text->text : "";
  }
  void setChildren(std::span<RenderedView* const>) override {}
  void setRows(std::span<const Row> given) override {
    rows.clear();
    for (const auto& row : given) {
      auto& names = rows.emplace_back();
      for (auto* cell : row) names.push_back(cell != nullptr ? dynamic_cast<GridRecorder*>(cell)->name : "-");
    }
  }
  std::string name;
  std::vector<std::vector<std::string>> rows;
};

class GridRenderer : public ViewRenderer {
 public:
  std::unique_ptr<RenderedView> render(const Element& element) override {
    auto view = std::make_unique<GridRecorder>(element);
    if (std::holds_alternative<GridContent>(element.content)) grid = view.get();
    return view;
  }
  void setRoot(std::span<RenderedView* const>) override {}
  GridRecorder* grid = nullptr;
};

struct CellRow {
  std::string name;
  View body() const { return Group({Text(name + "1"), Text(name + "2")}); }
};

TEST_F(ViewHostTest, AGridIsToldItsRowsWithTheirEmptyCells) {
  auto renderer = std::make_unique<GridRenderer>();
  const auto& seen = *renderer;
  const std::vector<std::string> names = {"p", "q"};
  const ViewHost host(
      Grid({Group({Text("a"), when(false, [] { return Text("b"); }), Text("c")}), EmptyView(), Text("alone"),
            CellRow{"r"},
            ForEach(
                names, [](const auto& n) { return n; }, [](const auto& n) { return CellRow{n}; })}),
      std::move(renderer));
  EXPECT_EQ(seen.grid->rows, (std::vector<std::vector<std::string>>{
                                 {"a", "-", "c"}, {"alone"}, {"r1", "r2"}, {"p1", "p2"}, {"q1", "q2"}}));
}

TEST_F(ViewHostTest, APlaceIsKnownWhileItsViewStands) {
  const auto place = std::make_shared<ViewPlace>();
  auto tree = hosted(VStack({Text("here").placed(place)}));
  EXPECT_FALSE(place->inWindow().has_value());
  tree->all<TextContent>().front()->place = ViewPlace::InWindow{3, {{1, 2}, {30, 40}}};
  ASSERT_TRUE(place->inWindow().has_value());
  EXPECT_EQ(place->inWindow()->windowNumber, 3);
  tree.reset();
  EXPECT_FALSE(place->inWindow().has_value());
}

TEST_F(ViewHostTest, EveryKindHasAWordForTests) {
  const auto tree = hosted(VStack({Button(
                                       "go", [] {}, ButtonStyle::link),
                                   CheckBox("c", Binding<bool>::constant(true))}));
  EXPECT_EQ(tree->roots().front()->kind(), "stack");
  EXPECT_EQ(tree->control("go")->kind(), "link");
  EXPECT_EQ(tree->control("c")->kind(), "check box");
}

TEST_F(ViewHostTest, HoldingDownTellsOfBothEndsUnlessDisabled) {
  std::vector<bool> told;
  const auto note = [&](bool isDown) { told.push_back(isDown); };
  const auto tree = hosted(VStack({Text("a").onPress(note), Text("b").onPress(note).disabled(true)}));
  for (auto* text : tree->all<TextContent>()) {
    text->holdDown(true);
    text->holdDown(false);
  }
  EXPECT_EQ(told, (std::vector<bool>{true, false}));
}

}  // namespace
}  // namespace platform
