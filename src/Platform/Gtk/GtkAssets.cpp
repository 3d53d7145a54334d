#include "Platform/Gtk/GtkAssets.h"

#include "Platform/Gtk/ProgramFolders.h"

#include <array>

namespace platform {

namespace {

struct Name {
  std::string_view ours;
  std::string_view theirs;
};

constexpr std::array symbols = {
    Name{"1.square", "velkin-1-square-symbolic"},
    Name{"2.square", "velkin-2-square-symbolic"},
    Name{"3.square", "velkin-3-square-symbolic"},
    Name{"4.square", "velkin-4-square-symbolic"},
    Name{"arrow.clockwise", "view-refresh-symbolic"},
    Name{"arrow.counterclockwise", "edit-undo-symbolic"},
    Name{"arrow.down.right.and.arrow.up.left", "view-restore-symbolic"},
    Name{"arrow.triangle.2.circlepath.circle", "view-refresh-symbolic"},
    Name{"arrow.up.left.and.arrow.down.right", "view-fullscreen-symbolic"},
    Name{"bold", "velkin-bold-symbolic"},
    Name{"checkmark", "object-select-symbolic"},
    Name{"checkmark.rectangle", "checkbox-checked-symbolic"},
    Name{"chevron.down", "go-down-symbolic"},
    Name{"chevron.left", "go-previous-symbolic"},
    Name{"chevron.right", "go-next-symbolic"},
    Name{"chevron.up", "go-up-symbolic"},
    Name{"clock.arrow.circlepath", "document-open-recent-symbolic"},
    Name{"doc.on.doc", "edit-copy-symbolic"},
    Name{"ellipsis", "view-more-horizontal-symbolic"},
    Name{"ellipsis.curlybraces", "velkin-inline-code-symbolic"},
    Name{"eye", "view-reveal-symbolic"},
    Name{"gear", "emblem-system-symbolic"},
    Name{"gearshape", "emblem-system-symbolic"},
    Name{"h.square", "velkin-header-symbolic"},
    Name{"house", "go-home-symbolic"},
    Name{"house.circle", "go-home-symbolic"},
    Name{"italic", "velkin-italic-symbolic"},
    Name{"keyboard", "input-keyboard-symbolic"},
    Name{"line.3.horizontal", "open-menu-symbolic"},
    Name{"line.diagonal", "velkin-divider-symbolic"},
    Name{"link", "velkin-link-symbolic"},
    Name{"magnifyingglass", "system-search-symbolic"},
    Name{"paperplane", "document-send-symbolic"},
    Name{"photo", "velkin-photo-symbolic"},
    Name{"plus", "list-add-symbolic"},
    Name{"rectangle.bottomhalf.inset.filled", "velkin-preview-bottom-symbolic"},
    Name{"rectangle.righthalf.inset.filled", "velkin-preview-right-symbolic"},
    Name{"rectangle", "checkbox-symbolic"},
    Name{"safari", "web-browser-symbolic"},
    Name{"square.and.arrow.down", "document-save-symbolic"},
    Name{"strikethrough", "velkin-strikethrough-symbolic"},
    Name{"tablecells", "velkin-table-symbolic"},
    Name{"text.aligncenter", "velkin-code-block-symbolic"},
    Name{"text.quote", "velkin-quote-symbolic"},
    Name{"textformat.size.larger", "velkin-text-larger-symbolic"},
    Name{"textformat.size.smaller", "velkin-text-smaller-symbolic"},
    Name{"trash", "user-trash-symbolic"},
    Name{"x.circle", "application-exit-symbolic"},
    Name{"xmark.circle", "edit-clear-symbolic"},
    Name{"xmark", "window-close-symbolic"},
};

constexpr std::array statusImages = {
    Name{"velkin.diamondgear.black", "velkin-diamondgear-symbolic"},
};

constexpr std::array images = {
    Name{"Velkin01", "icons/com.tarnvale.Velkin.svg"},
    Name{"Velkin16x9_dark", "images/Velkin16x9_dark.svg"},
    Name{"Velkin16x9_light", "images/Velkin16x9_light.svg"},
};

template <std::size_t size>
std::string_view find(const std::array<Name, size>& table, std::string_view name) {
  for (const auto& row : table) {
    if (row.ours == name) return row.theirs;
  }
  return name;
}

}  // namespace

std::string iconNameOfSymbol(std::string_view symbol) { return std::string(find(symbols, symbol)); }

std::filesystem::path folderOfOwnSymbols() { return ProgramFolders::data() / "icons"; }

std::string iconNameOfStatusImage(std::string_view image) { return std::string(find(statusImages, image)); }

std::filesystem::path fileOfImage(std::string_view image) {
  return ProgramFolders::data() / find(images, image);
}

}  // namespace platform
