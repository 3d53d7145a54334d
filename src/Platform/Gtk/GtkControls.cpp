#include "Platform/Gtk/GtkControls.h"

#include "Platform/Alive.h"
#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkAssets.h"
#include "Platform/Gtk/GtkStyle.h"
#include "Platform/Gtk/GtkSymbols.h"
#include "Platform/Gtk/GtkTextEdits.h"

#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <utility>

namespace platform {

namespace {

float xalign(Alignment alignment) {
  if (alignment == Alignment::leading) return 0;
  return alignment == Alignment::trailing ? 1 : 0.5F;
}

class LabelView : public GtkRenderedView {
 public:
  explicit LabelView(const Element& element) : GtkRenderedView(gtk_label_new(nullptr)) {
    gtk_label_set_wrap_mode(GTK_LABEL(widget()), PANGO_WRAP_WORD_CHAR);
    update(element);
  }

 protected:
  void updateContent(const Element& element) override {
    auto* label = GTK_LABEL(widget());
    const auto& m = element.modifiers;
    gtk_label_set_text(label, contentOf<TextContent>(element).text.c_str());
    gtk_label_set_xalign(label, xalign(m.frame.alignment.value_or(Alignment::center)));
    const auto alignment = m.textAlignment.value_or(m.frame.alignment.value_or(Alignment::center));
    gtk_label_set_justify(label, alignment == Alignment::leading    ? GTK_JUSTIFY_LEFT
                                 : alignment == Alignment::trailing ? GTK_JUSTIFY_RIGHT
                                                                    : GTK_JUSTIFY_CENTER);
    // A label of a fixed width wraps at it, rather than asking for the width of its whole text.
    gtk_label_set_max_width_chars(label, m.frame.width ? 1 : -1);
    const bool isOneLine = m.lineLimit == 1;
    gtk_label_set_wrap(label, !isOneLine);
    gtk_label_set_selectable(label, m.isSelectable);
    gtk_label_set_lines(label, m.lineLimit.value_or(-1));
    // A single line without a width of its own has the width of its text.
    const bool isCut = m.lineLimit && (!isOneLine || m.frame.width || m.frame.maxWidth);
    gtk_label_set_ellipsize(label, isCut ? PANGO_ELLIPSIZE_END : PANGO_ELLIPSIZE_NONE);
  }
};

class SymbolView : public GtkRenderedView {
 public:
  explicit SymbolView(const Element& element) : GtkRenderedView(gtk_image_new()) { update(element); }

 protected:
  void updateContent(const Element& element) override {
    auto* image = GTK_IMAGE(widget());
    const auto name = iconNameOfSymbol(contentOf<ImageContent>(element).name);
    showSymbol(image, name);
    const auto& height = element.modifiers.frame.height;
    gtk_image_set_pixel_size(image, height ? static_cast<int>(std::lround(*height)) : -1);
  }
};

/// An image of a fixed square size.
class IconView : public GtkRenderedView {
 public:
  explicit IconView(const Element& element) : GtkRenderedView(gtk_image_new()) { update(element); }

 protected:
  void updateContent(const Element& element) override {
    const auto file = fileOfImage(contentOf<ImageContent>(element).name);
    gtk_image_set_from_file(GTK_IMAGE(widget()), file.c_str());
    gtk_image_set_pixel_size(GTK_IMAGE(widget()),
                             static_cast<int>(std::lround(element.modifiers.frame.height.value_or(0))));
  }
};

class PictureView : public GtkRenderedView {
 public:
  explicit PictureView(const Element& element) : GtkRenderedView(gtk_picture_new()) {
    gtk_picture_set_can_shrink(GTK_PICTURE(widget()), TRUE);
    update(element);
  }

 protected:
  void updateContent(const Element& element) override {
    const auto& name = contentOf<ImageContent>(element).name;
    if (name == name_) return;
    name_ = name;
    gtk_picture_set_filename(GTK_PICTURE(widget()), fileOfImage(name).c_str());
  }

 private:
  std::string name_;
};

class ButtonView : public GtkRenderedView {
 public:
  explicit ButtonView(const Element& element) : GtkRenderedView(newButton(element)) {
    g_signal_connect_swapped(widget(), "clicked", G_CALLBACK(+[](ButtonView* self) {
                               // A copy: the action may replace this very button.
                               const auto action = contentOf<ButtonContent>(self->element()).action;
                               if (action) action();
                             }),
                             this);
    update(element);
  }

  void setChildren(std::span<RenderedView* const> children) override {
    const auto wanted = widgetsOf(children);
    GtkWidget* label = wanted.empty() ? nullptr : wanted.front();
    if (label != nullptr)
      static_cast<GtkRenderedView*>(children.front())->align(Axis::depth, Alignment::center);
    if (gtk_button_get_child(GTK_BUTTON(widget())) != label)
      gtk_button_set_child(GTK_BUTTON(widget()), label);
    // The toolkit of today does this by itself.
    const auto& m = element().modifiers;
    if (label != nullptr && m.label.empty() && m.help.empty()) {
      gtk_accessible_update_relation(GTK_ACCESSIBLE(widget()), GTK_ACCESSIBLE_RELATION_LABELLED_BY, label,
                                     nullptr, -1);
    }
  }

 protected:
  void updateContent(const Element& element) override {
    const auto style = contentOf<ButtonContent>(element).style;
    const bool isLink = style == ButtonStyle::link;
    gtk_button_set_has_frame(GTK_BUTTON(widget()), style != ButtonStyle::borderless && !isLink);
    if (style == ButtonStyle::prominent) {
      gtk_widget_add_css_class(widget(), "suggested-action");
    } else {
      gtk_widget_remove_css_class(widget(), "suggested-action");
    }
  }

 private:
  static GtkWidget* newButton(const Element& element) {
    if (contentOf<ButtonContent>(element).style != ButtonStyle::link) return gtk_button_new();
    auto* link =
        GTK_WIDGET(g_object_new(GTK_TYPE_BUTTON, "accessible-role", GTK_ACCESSIBLE_ROLE_LINK, nullptr));
    gtk_widget_add_css_class(link, "link");
    gtk_widget_set_cursor_from_name(link, "pointer");
    return link;
  }
};

/// Hears of the keys of its window that nothing else has a use for, as long as its widget is in one.
class UnusedKeys {
 public:
  using Handler = std::function<bool(guint keyval, GdkModifierType state)>;

  UnusedKeys(GtkWidget* widget, Handler handler) : widget_(widget), handler_(std::move(handler)) {
    g_signal_connect_swapped(widget, "notify::root", G_CALLBACK(+[](UnusedKeys* self) { self->follow(); }),
                             this);
    follow();
  }
  ~UnusedKeys() {
    g_signal_handlers_disconnect_by_data(widget_, this);
    leave();
  }
  UnusedKeys(const UnusedKeys&) = delete;
  UnusedKeys& operator=(const UnusedKeys&) = delete;

 private:
  void follow() {
    leave();
    auto* root = gtk_widget_get_root(widget_);
    if (root == nullptr) return;
    root_ = GObjectPtr<GtkWidget>::retain(GTK_WIDGET(root));
    keys_ = gtk_event_controller_key_new();
    g_signal_connect(keys_, "key-pressed",
                     G_CALLBACK(+[](GtkEventControllerKey*, guint keyval, guint, GdkModifierType state,
                                    gpointer self) -> gboolean {
                       return static_cast<UnusedKeys*>(self)->handler_(keyval, state) ? TRUE : FALSE;
                     }),
                     this);
    gtk_widget_add_controller(root_.get(), keys_);
  }
  void leave() {
    if (!root_) return;
    g_signal_handlers_disconnect_by_data(keys_, this);
    gtk_widget_remove_controller(root_.get(), keys_);
    root_ = {};
  }

  GtkWidget* widget_;
  Handler handler_;
  GObjectPtr<GtkWidget> root_;
  GtkEventController* keys_ = nullptr;
};

class FieldView : public GtkRenderedView {
 public:
  explicit FieldView(const Element& element) : GtkRenderedView(gtk_entry_new()) {
    gtk_widget_set_hexpand(widget(), TRUE);
    g_signal_connect_swapped(widget(), "changed", G_CALLBACK(+[](FieldView* self) {
                               if (self->isUpdating()) return;
                               const auto binding = contentOf<TextFieldContent>(self->element()).text;
                               binding.set(gtk_editable_get_text(GTK_EDITABLE(self->widget())));
                             }),
                             this);
    g_signal_connect_swapped(widget(), "activate", G_CALLBACK(+[](FieldView* self) {
                               const auto action = contentOf<TextFieldContent>(self->element()).onCommit;
                               if (action) action();
                             }),
                             this);
    // The toolkit cuts without a word: it shows in what comes of an insertion.
    g_signal_connect(focusWidget(), "insert-text",
                     G_CALLBACK(+[](GtkText* text, const char* added, int length, int*, gpointer data) {
                       auto* self = static_cast<FieldView*>(data);
                       self->wanted_ = sizeOf(text) + (length < 0 ? std::strlen(added) : std::size_t(length));
                     }),
                     this);
    g_signal_connect_after(focusWidget(), "insert-text",
                           G_CALLBACK(+[](GtkText* text, const char*, int, int*, gpointer data) {
                             auto* self = static_cast<FieldView*>(data);
                             if (self->isUpdating() || sizeOf(text) >= self->wanted_) return;
                             const auto action = contentOf<TextFieldContent>(self->element()).onCut;
                             if (action) action();
                           }),
                           this);
    update(element);
  }

 protected:
  GtkWidget* focusWidget() const override {
    return GTK_WIDGET(gtk_editable_get_delegate(GTK_EDITABLE(widget())));
  }
  void updateContent(const Element& element) override {
    const auto& content = contentOf<TextFieldContent>(element);
    auto* entry = GTK_ENTRY(widget());
    gtk_entry_set_placeholder_text(entry, content.placeholder.c_str());
    gtk_entry_set_visibility(entry, !content.isSecure);
    // Input methods remember no words of a secret.
    gtk_entry_set_input_purpose(entry,
                                content.isSecure ? GTK_INPUT_PURPOSE_PASSWORD : GTK_INPUT_PURPOSE_FREE_FORM);
    gtk_entry_set_has_frame(entry, !content.isPlain);
    if (content.isPlain) gtk_widget_add_css_class(widget(), "plain-field");
    if (content.onWake && !unusedKeys_) {
      unusedKeys_ = std::make_unique<UnusedKeys>(
          widget(), [this](guint keyval, GdkModifierType state) { return wakesBy(keyval, state); });
    }
    // Setting the text that it has would lose the cursor, the selection and a composition under way.
    const auto text = content.text.get();
    if (text != gtk_editable_get_text(GTK_EDITABLE(entry))) {
      gtk_editable_set_text(GTK_EDITABLE(entry), text.c_str());
      gtk_editable_set_position(GTK_EDITABLE(entry), -1);
    }
  }

 private:
  bool wakesBy(guint keyval, GdkModifierType state) {
    if (gtk_widget_is_sensitive(widget()) && typed_.empty()) return false;
    const auto content = contentOf<TextFieldContent>(element());
    if ((state & (GDK_CONTROL_MASK | GDK_ALT_MASK | GDK_SUPER_MASK)) != 0 || !content.onWake) return false;
    if (keyval == GDK_KEY_Return || keyval == GDK_KEY_KP_Enter || keyval == GDK_KEY_ISO_Enter) {
      if (content.onCommit) content.onCommit();
      return true;
    }
    const auto character = gdk_keyval_to_unicode(keyval);
    const bool isText = character != 0 && g_unichar_isprint(character);
    if (!isText && keyval != GDK_KEY_Tab && keyval != GDK_KEY_Up) return false;
    if (isText) {
      std::array<char, 6> bytes{};
      typed_.append(bytes.data(), static_cast<std::size_t>(g_unichar_to_utf8(character, bytes.data())));
    }
    content.onWake();
    if (isText) writeTyped(mostTurns);
    return true;
  }

  /// The field is drawn anew and gets the keyboard in later turns; what was typed goes into it then.
  void writeTyped(int turnsLeft) {
    DispatchQueue::main().async([this, alive = isAlive_.watch(), turnsLeft] {
      if (!alive || typed_.empty()) return;
      auto* text = GTK_EDITABLE(widget());
      if (!gtk_widget_has_focus(focusWidget()) && turnsLeft > 0) return writeTyped(turnsLeft - 1);
      const auto typed = std::exchange(typed_, {});
      if (!gtk_widget_is_sensitive(widget())) return;
      gtk_editable_delete_selection(text);
      int place = gtk_editable_get_position(text);
      gtk_editable_insert_text(text, typed.data(), static_cast<int>(typed.size()), &place);
      gtk_editable_set_position(text, place);
    });
  }

  static constexpr int mostTurns = 20;
  static std::size_t sizeOf(GtkText* text) { return gtk_entry_buffer_get_bytes(gtk_text_get_buffer(text)); }

  /// How many bytes there should be after an insertion.
  std::size_t wanted_ = 0;
  /// Only of a field that can be woken.
  std::unique_ptr<UnusedKeys> unusedKeys_;
  /// What was typed while the field was off.
  std::string typed_;
  Alive isAlive_;
};

class EditorView : public GtkRenderedView {
 public:
  explicit EditorView(const Element& element) : GtkRenderedView(gtk_scrolled_window_new()) {
    editor_ = gtk_text_view_new();
    gtk_text_view_set_wrap_mode(GTK_TEXT_VIEW(editor_), GTK_WRAP_WORD_CHAR);
    gtk_text_view_set_left_margin(GTK_TEXT_VIEW(editor_), 8);
    gtk_text_view_set_right_margin(GTK_TEXT_VIEW(editor_), 8);
    gtk_text_view_set_top_margin(GTK_TEXT_VIEW(editor_), 8);
    gtk_text_view_set_bottom_margin(GTK_TEXT_VIEW(editor_), 8);
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(widget()), editor_);
    gtk_widget_set_hexpand(widget(), TRUE);
    gtk_widget_set_vexpand(widget(), TRUE);
    g_signal_connect_swapped(buffer(), "changed", G_CALLBACK(+[](EditorView* self) {
                               if (self->isUpdating()) return;
                               const auto binding = contentOf<TextEditorContent>(self->element()).text;
                               binding.set(textOf(self->buffer()));
                             }),
                             this);
    update(element);
  }
  ~EditorView() override { g_signal_handlers_disconnect_by_data(buffer(), this); }

 protected:
  GtkWidget* focusWidget() const override { return editor_; }
  void updateContent(const Element& element) override {
    const auto wanted = contentOf<TextEditorContent>(element).text.get();
    changeText(buffer(), wanted);
  }

 private:
  GtkTextBuffer* buffer() const { return gtk_text_view_get_buffer(GTK_TEXT_VIEW(editor_)); }
  GtkWidget* editor_;
};

/// The name that a control has without one of its own in the modifiers, which come later.
void name(GtkWidget* widget, const std::string& title) {
  if (title.empty()) return;
  gtk_accessible_update_property(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_PROPERTY_LABEL, title.c_str(), -1);
}

class MenuPickerView : public GtkRenderedView {
 public:
  explicit MenuPickerView(const Element& element) : GtkRenderedView(gtk_drop_down_new(nullptr, nullptr)) {
    for (auto* child = gtk_widget_get_first_child(widget()); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
      if (GTK_IS_POPOVER(child)) squareWhereNotComposed(child);
    }
    g_signal_connect_swapped(widget(), "notify::selected", G_CALLBACK(+[](MenuPickerView* self) {
                               const auto selected =
                                   gtk_drop_down_get_selected(GTK_DROP_DOWN(self->widget()));
                               if (self->isUpdating() || selected == GTK_INVALID_LIST_POSITION) return;
                               const auto binding = contentOf<PickerContent>(self->element()).selection;
                               binding.set(static_cast<int>(selected));
                             }),
                             this);
    update(element);
  }

 protected:
  void updateContent(const Element& element) override {
    const auto& content = contentOf<PickerContent>(element);
    if (content.options != options_) {
      options_ = content.options;
      const auto list = GObjectPtr<GtkStringList>::adopt(gtk_string_list_new(nullptr));
      for (const auto& option : options_) gtk_string_list_append(list.get(), option.c_str());
      gtk_drop_down_set_model(GTK_DROP_DOWN(widget()), G_LIST_MODEL(list.get()));
    }
    const auto selected = content.selection.get();
    const bool isOne = selected >= 0 && static_cast<std::size_t>(selected) < options_.size();
    gtk_drop_down_set_selected(GTK_DROP_DOWN(widget()),
                               isOne ? static_cast<guint>(selected) : GTK_INVALID_LIST_POSITION);
    name(widget(), content.title);
    // The button inside is what a click meets.
    gtk_widget_set_focus_on_click(gtk_widget_get_first_child(widget()), !element.modifiers.leavesKeyboard);
  }

 private:
  std::vector<std::string> options_;
};

/// Not every version of the toolkit tells assistive tools that a check button of a group is one of several.
GtkWidget* radioButton(const std::string& title) {
  return GTK_WIDGET(g_object_new(GTK_TYPE_CHECK_BUTTON, "accessible-role", GTK_ACCESSIBLE_ROLE_RADIO, "label",
                                 title.c_str(), nullptr));
}

/// Radio buttons below one another, or joined buttons in a row.
class ChoiceView : public GtkRenderedView {
 public:
  explicit ChoiceView(const Element& element)
      : GtkRenderedView(GTK_WIDGET(g_object_new(
            GTK_TYPE_BOX, "accessible-role", GTK_ACCESSIBLE_ROLE_RADIO_GROUP, "orientation",
            contentOf<PickerContent>(element).style == PickerStyle::radioGroup ? GTK_ORIENTATION_VERTICAL
                                                                               : GTK_ORIENTATION_HORIZONTAL,
            "spacing", contentOf<PickerContent>(element).style == PickerStyle::radioRow ? 12 : 0, nullptr))) {
    if (isSegmented(element)) gtk_widget_add_css_class(widget(), "linked");
    update(element);
  }
  ~ChoiceView() override { disconnect(); }

 protected:
  void updateContent(const Element& element) override {
    const auto& content = contentOf<PickerContent>(element);
    if (content.options != options_) rebuild(content);
    name(widget(), content.title);
    // In a row of a fixed width each choice has the same room, as what stands above it may have.
    const bool isEven = element.modifiers.frame.width.has_value();
    gtk_box_set_homogeneous(GTK_BOX(widget()), isEven);
    if (isEven && content.style == PickerStyle::radioRow) {
      for (auto* button : buttons_) gtk_widget_set_halign(button, GTK_ALIGN_CENTER);
    }
    for (auto* button : buttons_) gtk_widget_set_focus_on_click(button, !element.modifiers.leavesKeyboard);
    const auto selected = content.selection.get();
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
      g_object_set(buttons_[i], "active", static_cast<int>(i) == selected, nullptr);
    }
  }

 private:
  static bool isSegmented(const Element& element) {
    return contentOf<PickerContent>(element).style == PickerStyle::segmented;
  }

  void disconnect() {
    for (auto* button : buttons_) g_signal_handlers_disconnect_by_data(button, this);
  }

  void rebuild(const PickerContent& content) {
    disconnect();
    for (auto* button : buttons_) gtk_box_remove(GTK_BOX(widget()), button);
    buttons_.clear();
    options_ = content.options;
    for (const auto& option : options_) {
      GtkWidget* button = content.style == PickerStyle::segmented
                              ? gtk_toggle_button_new_with_label(option.c_str())
                              : radioButton(option);
      name(button, option);
      if (!buttons_.empty() && content.style == PickerStyle::segmented) {
        gtk_toggle_button_set_group(GTK_TOGGLE_BUTTON(button), GTK_TOGGLE_BUTTON(buttons_.front()));
      } else if (!buttons_.empty()) {
        gtk_check_button_set_group(GTK_CHECK_BUTTON(button), GTK_CHECK_BUTTON(buttons_.front()));
      }
      gtk_box_append(GTK_BOX(widget()), button);
      g_signal_connect_swapped(button, "toggled", G_CALLBACK(+[](ChoiceView* self) { self->toggled(); }),
                               this);
      buttons_.push_back(button);
    }
  }

  void toggled() {
    if (isUpdating()) return;
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
      gboolean isActive = FALSE;
      g_object_get(buttons_[i], "active", &isActive, nullptr);
      if (!isActive) continue;
      const auto binding = contentOf<PickerContent>(element()).selection;
      if (binding.get() != static_cast<int>(i)) binding.set(static_cast<int>(i));
      return;
    }
  }

  std::vector<std::string> options_;
  std::vector<GtkWidget*> buttons_;
};

class CheckBoxView : public GtkRenderedView {
 public:
  explicit CheckBoxView(const Element& element) : GtkRenderedView(gtk_check_button_new()) {
    g_signal_connect_swapped(widget(), "toggled", G_CALLBACK(+[](CheckBoxView* self) {
                               if (self->isUpdating()) return;
                               const auto binding = contentOf<CheckBoxContent>(self->element()).isOn;
                               binding.set(gtk_check_button_get_active(GTK_CHECK_BUTTON(self->widget())));
                             }),
                             this);
    update(element);
  }

 protected:
  void updateContent(const Element& element) override {
    const auto& content = contentOf<CheckBoxContent>(element);
    gtk_check_button_set_label(GTK_CHECK_BUTTON(widget()), content.title.c_str());
    name(widget(), content.title);
    gtk_check_button_set_active(GTK_CHECK_BUTTON(widget()), content.isOn.get());
  }
};

/// A kind that is all there is to it.
class PlainView : public GtkRenderedView {
 public:
  PlainView(const Element& element, GtkWidget* plain) : GtkRenderedView(plain) { update(element); }

 protected:
  void updateContent(const Element&) override {}
};

GtkWidget* spinner() {
  GtkWidget* widget = gtk_spinner_new();
  gtk_spinner_start(GTK_SPINNER(widget));
  return widget;
}

}  // namespace

using Rendered = std::unique_ptr<GtkRenderedView>;

Rendered renderKind(const TextContent&, const Element& element) {
  return std::make_unique<LabelView>(element);
}

Rendered renderKind(const ImageContent& image, const Element& element) {
  if (image.source == ImageContent::Source::symbol) return std::make_unique<SymbolView>(element);
  const auto& frame = element.modifiers.frame;
  if (frame.width && frame.width == frame.height) return std::make_unique<IconView>(element);
  return std::make_unique<PictureView>(element);
}

Rendered renderKind(const ButtonContent&, const Element& element) {
  return std::make_unique<ButtonView>(element);
}

Rendered renderKind(const TextFieldContent&, const Element& element) {
  return std::make_unique<FieldView>(element);
}

Rendered renderKind(const TextEditorContent&, const Element& element) {
  return std::make_unique<EditorView>(element);
}

Rendered renderKind(const PickerContent& picker, const Element& element) {
  if (picker.style == PickerStyle::menu) return std::make_unique<MenuPickerView>(element);
  return std::make_unique<ChoiceView>(element);
}

Rendered renderKind(const CheckBoxContent&, const Element& element) {
  return std::make_unique<CheckBoxView>(element);
}

Rendered renderKind(const ProgressContent&, const Element& element) {
  return std::make_unique<PlainView>(element, spinner());
}

Rendered renderKind(const DividerContent&, const Element& element) {
  return std::make_unique<PlainView>(element, gtk_separator_new(GTK_ORIENTATION_HORIZONTAL));
}

Rendered renderKind(const SpacerContent&, const Element& element) {
  return std::make_unique<PlainView>(element, gtk_box_new(GTK_ORIENTATION_VERTICAL, 0));
}

}  // namespace platform
