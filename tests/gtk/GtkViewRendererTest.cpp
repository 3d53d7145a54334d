#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkAssets.h"
#include "Platform/Gtk/GtkRenderedView.h"
#include "Platform/View/ObservableObject.h"
#include "Platform/View/State.h"
#include "gtk/GtkFixture.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace platform {
namespace {

class GtkViewRendererTest : public GtkFixture {
 protected:
  void host(View view, int width = 400, int height = 300) {
    hosting = std::make_unique<GtkHostingView>(std::move(view));
    show(hosting->widget(), width, height);
  }
  ~GtkViewRendererTest() override { hosting.reset(); }
  GtkWidget* root() { return hosting->widget(); }
  GtkWidget* only(GType type) {
    const auto found = all(root(), type);
    EXPECT_EQ(found.size(), 1U) << g_type_name(type);
    return found.empty() ? nullptr : found.front();
  }

  std::unique_ptr<GtkHostingView> hosting;
};

using Texts = std::vector<std::string>;

TEST_F(GtkViewRendererTest, AColumnHasItsChildrenInOrder) {
  host(VStack({Text("one"), EmptyView(), Group({Text("two"), Text("three")}), HStack({Text("four")})}));
  EXPECT_EQ(labels(root()), (Texts{"one", "two", "three", "four"}));
}

TEST_F(GtkViewRendererTest, EveryKindHasAWidget) {
  const State<std::string> text{std::string("text")};
  const State<int> choice{1};
  const State<bool> isOn{true};
  host(VStack({Text("t"), Symbol("magnifyingglass"), Image("Velkin01"), Button("b", [] {}),
               TextField("f", text.binding()), TextEditor(text.binding()),
               Picker("p", {"x", "y"}, choice.binding()),
               Picker("p", {"x", "y"}, choice.binding(), PickerStyle::radioGroup),
               Picker("p", {"x", "y"}, choice.binding(), PickerStyle::segmented),
               CheckBox("c", isOn.binding()), ProgressView(), Divider(), Spacer(),
               ZStack({Text("below"), Text("above")}),
               Grid({Group({Text("a1"), Text("a2")}), Group({Text("b1")})}), ScrollView(Text("s")),
               Text("anchor").popover(Binding<bool>::constant(false), [] { return Text("bubble"); })}),
       400, 1400);
  const auto images = all(root(), GTK_TYPE_IMAGE);
  EXPECT_TRUE(std::any_of(images.begin(), images.end(), [](GtkWidget* image) {
    return g_strcmp0(gtk_image_get_icon_name(GTK_IMAGE(image)), "system-search-symbolic") == 0;
  }));
  EXPECT_EQ(all(root(), GTK_TYPE_PICTURE).size(), 1U);
  EXPECT_EQ(all(root(), GTK_TYPE_ENTRY).size(), 1U);
  EXPECT_EQ(all(root(), GTK_TYPE_TEXT_VIEW).size(), 1U);
  EXPECT_EQ(gtk_drop_down_get_selected(GTK_DROP_DOWN(only(GTK_TYPE_DROP_DOWN))), 1U);
  const auto checks = all(root(), GTK_TYPE_CHECK_BUTTON);
  ASSERT_EQ(checks.size(), 3U);
  EXPECT_FALSE(gtk_check_button_get_active(GTK_CHECK_BUTTON(checks[0])));
  EXPECT_TRUE(gtk_check_button_get_active(GTK_CHECK_BUTTON(checks[1])));
  EXPECT_TRUE(gtk_check_button_get_active(GTK_CHECK_BUTTON(checks[2])));
  EXPECT_EQ(all(root(), GTK_TYPE_SPINNER).size(), 1U);
  // The layers, and the host's own root.
  EXPECT_EQ(all(root(), GTK_TYPE_OVERLAY).size(), 2U);
  EXPECT_EQ(all(root(), GTK_TYPE_GRID).size(), 1U);
}

struct Typing {
  State<std::string> text{std::string("abcdef")};
  State<int> other{0};

  View body() const {
    return VStack({Text(std::to_string(other.get())), TextField("Name", text.binding()), Text(text.get())});
  }
};

class TextFieldPasteTest : public GtkViewRendererTest {
 protected:
  void hostField() {
    host(TextField("Prompt", text.binding(), {.isPlain = true, .onCut = [this] { ++cuts; }})
             .frame({.maxWidth = infinity}));
    field = GTK_WIDGET(gtk_editable_get_delegate(GTK_EDITABLE(only(GTK_TYPE_ENTRY))));
  }
  /// By the clipboard, as a person does it.
  void paste(const std::string& pasted) {
    gdk_clipboard_set_text(gtk_widget_get_clipboard(field), pasted.c_str());
    const auto before = text.get();
    gtk_widget_activate_action(field, "clipboard.paste", nullptr);
    EXPECT_TRUE(wait([&] { return text.get() != before; }));
  }

  State<std::string> text;
  GtkWidget* field = nullptr;
  int cuts = 0;
};

TEST_F(TextFieldPasteTest, LineBreaksStayInTheTextAndItIsShownAsOneLine) {
  hostField();
  const auto height = gtk_widget_get_height(field);
  paste("int main() {\n  return 0;\r\n}\n\nexplain");
  EXPECT_EQ(text.get(), "int main() {\n  return 0;\r\n}\n\nexplain");
  turn();
  EXPECT_EQ(gtk_widget_get_height(field), height);
  EXPECT_EQ(cuts, 0);
}

TEST_F(TextFieldPasteTest, WhatTheFieldCantHoldIsTold) {
  hostField();
  paste(std::string(60'000, 'x'));
  EXPECT_EQ(text.get().size(), 60'000U);
  EXPECT_EQ(cuts, 0);
  paste(std::string(60'000, 'y'));
  EXPECT_LT(text.get().size(), 120'000U);
  EXPECT_GT(text.get().size(), 60'000U);
  EXPECT_EQ(cuts, 1);
}

TEST_F(GtkViewRendererTest, ATextFieldKeepsItsWidgetTextAndCursorThroughRedraws) {
  const Typing typing;
  host(typing);
  GtkWidget* entry = only(GTK_TYPE_ENTRY);
  gtk_editable_set_position(GTK_EDITABLE(entry), 3);
  typing.other.set(1);
  turn();
  EXPECT_EQ(labels(root()).front(), "1");
  EXPECT_EQ(only(GTK_TYPE_ENTRY), entry);
  EXPECT_EQ(gtk_editable_get_position(GTK_EDITABLE(entry)), 3);
}

TEST_F(GtkViewRendererTest, TypingReachesTheBindingAndComesBackWithoutMovingTheCursor) {
  const Typing typing;
  host(typing);
  GtkWidget* entry = only(GTK_TYPE_ENTRY);
  int position = 3;
  gtk_editable_insert_text(GTK_EDITABLE(entry), "XY", 2, &position);
  gtk_editable_set_position(GTK_EDITABLE(entry), 5);
  turn();
  EXPECT_EQ(typing.text.get(), "abcXYdef");
  EXPECT_EQ(gtk_editable_get_position(GTK_EDITABLE(entry)), 5);
  typing.text.set("new");
  turn();
  EXPECT_STREQ(gtk_editable_get_text(GTK_EDITABLE(entry)), "new");
}

struct Pressing {
  State<int> count{0};
  State<bool> isDisabled{false};
  View body() const {
    return VStack(
        {Button("Press", [count = count] { count.set(count.get() + 1); }).disabled(isDisabled.get()),
         Text(std::to_string(count.get()))});
  }
};

TEST_F(GtkViewRendererTest, AButtonRunsItsActionAndADisabledOneCantBeUsed) {
  const Pressing pressing;
  host(pressing);
  GtkWidget* button = only(GTK_TYPE_BUTTON);
  g_signal_emit_by_name(button, "clicked");
  turn();
  EXPECT_EQ(pressing.count.get(), 1);
  EXPECT_EQ(labels(root()).back(), "1");
  pressing.isDisabled.set(true);
  turn();
  EXPECT_FALSE(gtk_widget_is_sensitive(button));
}

struct Vanishing {
  State<bool> isGone{false};
  View body() const {
    return VStack({isGone.get() ? Text("gone") : Button("Go", [isGone = isGone] { isGone.set(true); })});
  }
};

TEST_F(GtkViewRendererTest, AButtonMayReplaceItself) {
  host(Vanishing{});
  g_signal_emit_by_name(only(GTK_TYPE_BUTTON), "clicked");
  turn();
  EXPECT_TRUE(all(root(), GTK_TYPE_BUTTON).empty());
  EXPECT_EQ(labels(root()), Texts{"gone"});
}

struct Choosing {
  State<int> choice{0};
  State<bool> isOn{false};
  View body() const {
    return VStack({Picker("p", {"a", "b", "c"}, choice.binding()),
                   Picker("p", {"a", "b", "c"}, choice.binding(), PickerStyle::radioGroup),
                   CheckBox("on", isOn.binding())});
  }
};

TEST_F(GtkViewRendererTest, PickersAndCheckBoxesFollowTheirBindingBothWays) {
  const Choosing choosing;
  host(choosing);
  gtk_drop_down_set_selected(GTK_DROP_DOWN(only(GTK_TYPE_DROP_DOWN)), 2);
  turn();
  EXPECT_EQ(choosing.choice.get(), 2);
  const auto checks = all(root(), GTK_TYPE_CHECK_BUTTON);
  EXPECT_TRUE(gtk_check_button_get_active(GTK_CHECK_BUTTON(checks[2])));
  gtk_check_button_set_active(GTK_CHECK_BUTTON(checks[1]), TRUE);
  turn();
  EXPECT_EQ(choosing.choice.get(), 1);
  EXPECT_EQ(gtk_drop_down_get_selected(GTK_DROP_DOWN(only(GTK_TYPE_DROP_DOWN))), 1U);
  gtk_check_button_set_active(GTK_CHECK_BUTTON(checks[3]), TRUE);
  turn();
  EXPECT_TRUE(choosing.isOn.get());
}

TEST_F(GtkViewRendererTest, FixedFramesAreExactAndTheRestTakesWhatIsLeft) {
  host(HStack({.spacing = 0, .alignment = Alignment::fill},
              {Text("side").frame({.width = 120, .maxHeight = infinity}), Divider(),
               TextEditor(Binding<std::string>::constant(""))}),
       400, 300);
  const auto side = boundsIn(all(root(), GTK_TYPE_LABEL).front(), root());
  const auto editor = boundsIn(all(root(), GTK_TYPE_SCROLLED_WINDOW).front(), root());
  EXPECT_EQ(side.width, 120);
  EXPECT_EQ(side.height, 300);
  EXPECT_EQ(editor.x + editor.width, 400);
  EXPECT_GE(editor.width, 270);
  EXPECT_EQ(editor.height, 300);
}

TEST_F(GtkViewRendererTest, AColumnCentresWhatIsNarrowAndASpacerPushes) {
  host(VStack({Text("x").frame({.width = 100, .height = 20}), Spacer(),
               Text("y").frame({.width = 50, .height = 20})}),
       400, 300);
  const auto texts = all(root(), GTK_TYPE_LABEL);
  const auto first = boundsIn(texts[0], root());
  const auto last = boundsIn(texts[1], root());
  EXPECT_EQ(first.x, 150);
  EXPECT_EQ(first.y, 0);
  EXPECT_EQ(last.y + last.height, 300);
}

TEST_F(GtkViewRendererTest, LeadingAlignmentPutsNarrowViewsAtTheStart) {
  host(VStack({.spacing = 0, .alignment = Alignment::leading},
              {Text("x").frame({.width = 100, .height = 20}), Divider()}),
       400, 300);
  EXPECT_EQ(boundsIn(all(root(), GTK_TYPE_LABEL)[0], root()).x, 0);
  EXPECT_EQ(boundsIn(all(root(), GTK_TYPE_SEPARATOR)[0], root()).width, 400);
}

TEST_F(GtkViewRendererTest, PaddingIsAroundOrInsideABackground) {
  host(VStack({.spacing = 0, .alignment = Alignment::fill},
              {Text("x").frame({.height = 20}).padding(EdgeInsets::all(10)),
               HStack({Text("y").frame({.width = 30, .height = 20})})
                   .padding(EdgeInsets::all(5))
                   .background(Color::Role::accent)}),
       400, 300);
  const auto texts = all(root(), GTK_TYPE_LABEL);
  EXPECT_EQ(boundsIn(texts[0], root()).y, 10);
  const auto y = boundsIn(texts[1], root());
  EXPECT_EQ(y.y, 10 + 20 + 10 + 5);
}

struct Layers {
  State<bool> hasCover{false};
  View body() const {
    return ZStack({Text("base"), when(hasCover.get(), [] { return Text("cover"); })});
  }
};

TEST_F(GtkViewRendererTest, ALayerComesAndGoes) {
  const Layers layers;
  host(layers);
  EXPECT_EQ(labels(root()), Texts{"base"});
  layers.hasCover.set(true);
  turn();
  EXPECT_EQ(labels(root()), (Texts{"base", "cover"}));
  layers.hasCover.set(false);
  turn();
  EXPECT_EQ(labels(root()), Texts{"base"});
}

struct Cells {
  State<int> rows{2};
  View body() const {
    Views all;
    for (int i = 0; i < rows.get(); ++i) all.push_back(Group({Text("k" + std::to_string(i)), Text("v")}));
    return Grid(std::move(all));
  }
};

TEST_F(GtkViewRendererTest, AGridsCellsStandInTheirRowAndColumn) {
  const Cells cells;
  host(cells);
  cells.rows.set(3);
  turn();
  auto* grid = GTK_GRID(only(GTK_TYPE_GRID));
  EXPECT_STREQ(gtk_label_get_text(GTK_LABEL(gtk_grid_get_child_at(grid, 0, 2))), "k2");
  EXPECT_STREQ(gtk_label_get_text(GTK_LABEL(gtk_grid_get_child_at(grid, 1, 0))), "v");
}

struct Focusing {
  State<bool> isFocused{true};
  View body() const {
    return VStack({TextField("first", Binding<std::string>::constant("")),
                   TextField("second", Binding<std::string>::constant("")).focused(isFocused.binding())});
  }
};

TEST_F(GtkViewRendererTest, AFocusedFieldHasTheKeyboardAsSoonAsItIsOnShow) {
  const Focusing focusing;
  host(focusing);
  const auto entries = all(root(), GTK_TYPE_ENTRY);
  ASSERT_TRUE(wait([&] {
    GtkWidget* focus = gtk_window_get_focus(window);
    return focus != nullptr && gtk_widget_is_ancestor(focus, entries[1]);
  }));
  gtk_widget_grab_focus(entries[0]);
  turn();
  EXPECT_FALSE(focusing.isFocused.get());
}

class Model : public ObservableObject {
 public:
  Published<bool> isOn{*this, false};
};

struct Watching {
  ObservedObject<Model> model;
  View body() const { return Text(model->isOn.get() ? "on" : "off"); }
};

TEST_F(GtkViewRendererTest, AnObservedObjectRedrawsTheWidgetInPlace) {
  const auto model = std::make_shared<Model>();
  host(Watching{model});
  GtkWidget* label = only(GTK_TYPE_LABEL);
  model->isOn.set(true);
  turn();
  EXPECT_EQ(only(GTK_TYPE_LABEL), label);
  EXPECT_EQ(labels(root()), Texts{"on"});
}

TEST_F(GtkViewRendererTest, ATooltipAndALabelReachTheWidget) {
  host(Button(Symbol("plus"), [] {}).help("Add"));
  EXPECT_STREQ(gtk_widget_get_tooltip_text(only(GTK_TYPE_BUTTON)), "Add");
}

TEST_F(GtkViewRendererTest, AFieldThatOutlivesItsViewCallsNobody) {
  const State<bool> isFocused{true};
  const State<std::string> text;
  hosting = std::make_unique<GtkHostingView>(
      TextField("Name", text.binding()).focused(isFocused.binding()).onTapGesture([] {}).onHover([](bool) {
      }));
  show(hosting->widget());
  auto* field = all(hosting->widget(), GTK_TYPE_TEXT).at(0);
  ASSERT_TRUE(wait([&] { return gtk_widget_has_focus(field) != FALSE; }));
  const auto controllersOf = [](GtkWidget* widget) {
    auto* list = gtk_widget_observe_controllers(widget);
    const auto count = g_list_model_get_n_items(list);
    g_object_unref(list);
    return count;
  };
  GtkWidget* plain = gtk_entry_new();
  g_object_ref_sink(plain);
  g_object_ref(field);
  hosting.reset();
  // As an event that is still on its way would hold it.
  EXPECT_EQ(controllersOf(field), controllersOf(GTK_WIDGET(gtk_editable_get_delegate(GTK_EDITABLE(plain)))));
  EXPECT_FALSE(g_signal_has_handler_pending(field, g_signal_lookup("map", GTK_TYPE_WIDGET), 0, TRUE));
  g_object_unref(field);
  g_object_unref(plain);
}

struct FieldsInAGrid {
  State<std::vector<std::string>> names{std::vector<std::string>{"a", "b"}};
  State<std::string> text{std::string("typed")};
  View body() const {
    return Grid({Group({Text("Name"), Text("Value")}),
                 ForEach(
                     names.get(), [](const auto& name) { return name; },
                     [this](const auto& name) {
                       return Group({Text(name), TextField(name, text.binding())});
                     })});
  }
};

TEST_F(GtkViewRendererTest, AFocusedFieldInAGridKeepsTheKeyboardAndItsCursorWhereverItsRowGoes) {
  const FieldsInAGrid fields;
  host(fields);
  const auto entries = all(root(), GTK_TYPE_ENTRY);
  ASSERT_EQ(entries.size(), 2U);
  GtkWidget* second = entries[1];
  gtk_widget_grab_focus(second);
  gtk_editable_set_position(GTK_EDITABLE(second), 2);
  GtkWidget* focus = gtk_root_get_focus(GTK_ROOT(window));
  ASSERT_TRUE(gtk_widget_is_ancestor(focus, second));
  fields.names.set({"b", "new", "a"});
  turn();
  // Each row's text, and what its field proposes.
  EXPECT_EQ(labels(only(GTK_TYPE_GRID)), (Texts{"Name", "Value", "b", "b", "new", "new", "a", "a"}));
  EXPECT_EQ(gtk_root_get_focus(GTK_ROOT(window)), focus);
  EXPECT_EQ(gtk_editable_get_position(GTK_EDITABLE(second)), 2);
  int column = 0;
  int row = 0;
  gtk_grid_query_child(GTK_GRID(only(GTK_TYPE_GRID)), second, &column, &row, nullptr, nullptr);
  EXPECT_EQ(column, 1);
  EXPECT_EQ(row, 1);
}

TEST_F(GtkViewRendererTest, AClickOnAButtonThatLeavesTheKeyboardLeavesItAndTabReachesIt) {
  host(Button("b", [] {}).leavesKeyboard());
  EXPECT_FALSE(gtk_widget_get_focus_on_click(only(GTK_TYPE_BUTTON)));
  EXPECT_TRUE(gtk_widget_get_focusable(only(GTK_TYPE_BUTTON)));
}

TEST_F(GtkViewRendererTest, RolesAreToldToAssistiveTools) {
  const State<int> choice{0};
  host(VStack({Text("Title").accessibilityRole(AccessibilityRole::heading),
               Button(
                   "l", [] {}, ButtonStyle::link),
               Picker("Width", {"x", "y"}, choice.binding(), PickerStyle::radioRow)}));
  EXPECT_EQ(gtk_accessible_get_accessible_role(GTK_ACCESSIBLE(all(root(), GTK_TYPE_LABEL).front())),
            GTK_ACCESSIBLE_ROLE_HEADING);
  EXPECT_EQ(gtk_accessible_get_accessible_role(GTK_ACCESSIBLE(only(GTK_TYPE_BUTTON))),
            GTK_ACCESSIBLE_ROLE_LINK);
  auto* group = gtk_widget_get_parent(all(root(), GTK_TYPE_CHECK_BUTTON).front());
  EXPECT_EQ(gtk_accessible_get_accessible_role(GTK_ACCESSIBLE(group)), GTK_ACCESSIBLE_ROLE_RADIO_GROUP);
  EXPECT_EQ(gtk_orientable_get_orientation(GTK_ORIENTABLE(group)), GTK_ORIENTATION_HORIZONTAL);
}

TEST_F(GtkViewRendererTest, ARowThatIsTooLongForItsPlaceCanBeScrolled) {
  Views buttons;
  for (int i = 0; i < 30; ++i) buttons.push_back(Button("Button " + std::to_string(i), [] {}));
  host(VStack({ScrollView(HStack(buttons), Axis::horizontal)}), 147, 200);
  EXPECT_EQ(gtk_widget_get_width(root()), 147);
  auto* scroll = gtk_scrolled_window_get_hadjustment(GTK_SCROLLED_WINDOW(only(GTK_TYPE_SCROLLED_WINDOW)));
  EXPECT_GT(gtk_adjustment_get_upper(scroll), gtk_adjustment_get_page_size(scroll));
}

TEST_F(GtkViewRendererTest, AViewKnowsItsPlaceInTheWindowFromTheBottom) {
  const auto place = std::make_shared<ViewPlace>();
  host(VStack({Text("here").frame({.height = 40}).placed(place), Spacer()}), 400, 300);
  ASSERT_TRUE(wait([&] { return place->inWindow().has_value(); }));
  EXPECT_EQ(place->inWindow()->frame.size.height, 40);
  EXPECT_EQ(place->inWindow()->frame.origin.y, 260);
  EXPECT_NE(place->inWindow()->windowNumber, 0);
}

TEST_F(GtkViewRendererTest, AnEditorOfADescriptionKeepsItsUndoWhenItsBindingChanges) {
  const State<std::string> text{std::string("one two")};
  host(TextEditor(text.binding()));
  auto* buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(only(GTK_TYPE_TEXT_VIEW)));
  gtk_text_buffer_insert_at_cursor(buffer, "!", -1);
  EXPECT_EQ(text.get().find('!') != std::string::npos, true);
  EXPECT_TRUE(gtk_text_buffer_get_can_undo(buffer));
}

TEST_F(GtkViewRendererTest, ASymbolThatTheDesktopsThemeLacksIsShownAllTheSame) {
  auto* settings = gtk_settings_get_default();
  g_object_set(settings, "gtk-icon-theme-name", "a-theme-that-is-not-there", nullptr);
  const std::vector<std::string> symbols = {"safari", "house", "gearshape", "ellipsis", "x.circle", "trash"};
  Views views;
  for (const auto& symbol : symbols) views.push_back(Symbol(symbol));
  host(VStack(std::move(views)));
  const auto images = all(root(), GTK_TYPE_IMAGE);
  ASSERT_EQ(images.size(), symbols.size());
  for (std::size_t i = 0; i < symbols.size(); ++i) {
    const auto& symbol = symbols[i];
    auto* image = GTK_IMAGE(images[i]);
    const auto name = iconNameOfSymbol(symbol);
    auto* theme = gtk_icon_theme_get_for_display(gdk_display_get_default());
    if (gtk_image_get_storage_type(image) == GTK_IMAGE_ICON_NAME) {
      EXPECT_TRUE(gtk_icon_theme_has_icon(theme, name.c_str())) << symbol;
      continue;
    }
    auto* icon = gtk_image_get_paintable(image);
    ASSERT_TRUE(GTK_IS_ICON_PAINTABLE(icon)) << symbol;
    EXPECT_TRUE(gtk_icon_paintable_is_symbolic(GTK_ICON_PAINTABLE(icon)))
        << symbol << " has no text's colour";
    const auto file = GObjectPtr<GFile>::adopt(gtk_icon_paintable_get_file(GTK_ICON_PAINTABLE(icon)));
    ASSERT_TRUE(file) << symbol;
    const GStringPtr fileName(g_file_get_basename(file.get()));
    EXPECT_TRUE(std::string(fileName.get()).starts_with(name)) << symbol << ": " << fileName.get();
  }
  gtk_settings_reset_property(settings, "gtk-icon-theme-name");
}

}  // namespace
}  // namespace platform
