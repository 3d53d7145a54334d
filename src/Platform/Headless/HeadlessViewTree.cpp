#include "Platform/Headless/HeadlessViewTree.h"

#include <algorithm>

namespace platform {

namespace {

template <class Content>
const Content* contentOf(const HeadlessView& view) {
  return std::get_if<Content>(&view.element().content);
}

void append(std::string& text, const std::string& words) {
  if (words.empty()) return;
  if (!text.empty()) text += ' ';
  text += words;
}

}  // namespace

HeadlessView::HeadlessView(const Element& shown) : element_(shown) {
  if (const auto* host = std::get_if<HostedContent>(&element_.content)) {
    hosted = host->makeNSView();
    host->updateNSView(*hosted);
  }
  applyPlace();
}

HeadlessView::~HeadlessView() {
  if (element_.modifiers.place) element_.modifiers.place->find = {};
}

std::string_view HeadlessView::kind() const {
  return std::visit(
      ByKind{
          [](const EmptyContent&) { return "empty"; }, [](const TextContent&) { return "text"; },
          [](const ImageContent&) { return "image"; },
          [](const ButtonContent& button) { return button.style == ButtonStyle::link ? "link" : "button"; },
          [](const TextFieldContent&) { return "text field"; },
          [](const TextEditorContent&) { return "text editor"; },
          [](const PickerContent&) { return "picker"; }, [](const CheckBoxContent&) { return "check box"; },
          [](const ProgressContent&) { return "progress"; }, [](const DividerContent&) { return "divider"; },
          [](const SpacerContent&) { return "spacer"; }, [](const StackContent&) { return "stack"; },
          [](const GridContent&) { return "grid"; }, [](const ScrollContent&) { return "scroll view"; },
          [](const GroupContent&) { return "group"; }, [](const ForEachContent&) { return "rows"; },
          [](const PopoverContent&) { return "popover"; }, [](const HostedContent&) { return "hosted view"; },
          [](const CompositeContent&) { return "view of the program"; }},
      element_.content);
}

void HeadlessView::applyPlace() {
  if (element_.modifiers.place) element_.modifiers.place->find = [this] { return place; };
}

std::string HeadlessView::text() const {
  std::string words;
  if (const auto* text = contentOf<TextContent>(*this)) append(words, text->text);
  if (const auto* box = contentOf<CheckBoxContent>(*this)) append(words, box->title);
  for (const auto* child : children_) append(words, child->text());
  return words;
}

bool HeadlessView::isEnabled() const {
  return !element_.modifiers.isDisabled && (parent_ == nullptr || parent_->isEnabled());
}

void HeadlessView::press() {
  if (!isEnabled()) return;
  // Copies: what is pressed may replace this very view.
  if (const auto* button = contentOf<ButtonContent>(*this)) {
    const auto action = button->action;
    if (action) action();
  } else if (const auto* box = contentOf<CheckBoxContent>(*this)) {
    const auto binding = box->isOn;
    binding.set(!binding.get());
  } else if (const auto action = element_.modifiers.onTap) {
    action();
  }
}

void HeadlessView::type(std::string text) {
  if (!isEnabled()) return;
  if (const auto* field = contentOf<TextFieldContent>(*this)) {
    const auto binding = field->text;
    binding.set(std::move(text));
  } else if (const auto* editor = contentOf<TextEditorContent>(*this)) {
    const auto binding = editor->text;
    binding.set(std::move(text));
  }
}

void HeadlessView::commit() {
  const auto* field = contentOf<TextFieldContent>(*this);
  if (field == nullptr || (!isEnabled() && !field->onWake)) return;
  const auto action = field->onCommit;
  if (action) action();
}

void HeadlessView::wake() {
  const auto* field = contentOf<TextFieldContent>(*this);
  if (field == nullptr || isEnabled()) return;
  const auto action = field->onWake;
  if (action) action();
}

void HeadlessView::select(int option) {
  const auto* picker = contentOf<PickerContent>(*this);
  if (picker == nullptr || !isEnabled()) return;
  const auto binding = picker->selection;
  binding.set(option);
}

void HeadlessView::hover(bool isInside) {
  const auto action = element_.modifiers.onHover;
  if (action) action(isInside);
}

void HeadlessView::holdDown(bool isDown) {
  if (!isEnabled()) return;
  const auto action = element_.modifiers.onPress;
  if (action) action(isDown);
}

void HeadlessView::update(const Element& element) {
  if (element_.modifiers.place) element_.modifiers.place->find = {};
  element_ = element;
  applyPlace();
  ++updateCount;
  if (const auto* host = std::get_if<HostedContent>(&element_.content)) host->updateNSView(*hosted);
}

void HeadlessView::setChildren(std::span<RenderedView* const> children) {
  children_.clear();
  for (auto* child : children) {
    children_.push_back(dynamic_cast<HeadlessView*>(child));
    children_.back()->parent_ = this;
  }
}

class HeadlessHostingView::Renderer : public ViewRenderer {
 public:
  std::vector<HeadlessView*> roots;

  std::unique_ptr<RenderedView> render(const Element& element) override {
    return std::make_unique<HeadlessView>(element);
  }
  void setRoot(std::span<RenderedView* const> views) override {
    roots.clear();
    for (auto* view : views) roots.push_back(dynamic_cast<HeadlessView*>(view));
  }
};

HeadlessHostingView::HeadlessHostingView(View root) {
  auto renderer = std::make_unique<Renderer>();
  renderer_ = renderer.get();
  host_ = std::make_unique<ViewHost>(std::move(root), std::move(renderer));
}

const std::vector<HeadlessView*>& HeadlessHostingView::roots() const noexcept { return renderer_->roots; }

std::vector<HeadlessView*> HeadlessHostingView::all(
    const std::function<bool(const HeadlessView&)>& matches) const {
  std::vector<HeadlessView*> found;
  std::function<void(HeadlessView*)> visit = [&](HeadlessView* view) {
    if (matches(*view)) found.push_back(view);
    for (auto* child : view->children()) visit(child);
  };
  for (auto* view : roots()) visit(view);
  return found;
}

HeadlessView* HeadlessHostingView::control(std::string_view name) const {
  const auto found = all([&](const HeadlessView& view) {
    const auto& modifiers = view.element().modifiers;
    const bool acts = contentOf<ButtonContent>(view) != nullptr ||
                      contentOf<CheckBoxContent>(view) != nullptr || modifiers.onTap != nullptr;
    return acts && (view.text() == name || modifiers.label == name || modifiers.help == name);
  });
  return found.empty() ? nullptr : found.front();
}

HeadlessView* HeadlessHostingView::field(std::string_view name) const {
  const auto found = all([&](const HeadlessView& view) {
    const auto* field = contentOf<TextFieldContent>(view);
    return field != nullptr && (field->placeholder == name || view.element().modifiers.label == name);
  });
  return found.empty() ? nullptr : found.front();
}

bool HeadlessHostingView::showsText(std::string_view text) const {
  return !all([&](const HeadlessView& view) {
            const auto* content = contentOf<TextContent>(view);
            return content != nullptr && content->text == text;
          }).empty();
}

}  // namespace platform
