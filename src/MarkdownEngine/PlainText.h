#pragma once

#include "MarkdownEngine/Component.h"

#include <string>

namespace markdown {

/// Appends the content without its markup. Escapes stay escapes, as the components hold them; the items of a
/// list are separated by commas, and lists in its items are left out.
void writePlainText(const Content& content, const ComponentRange& range, std::string& text);

/// Appends the text with "<", ">" and "&" as escapes.
void writeEscaped(std::string_view escapable, std::string& text);

}  // namespace markdown
