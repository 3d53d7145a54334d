#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// A saved page in the engine's form (MHTML, a mail of many parts) as a web archive: a property list with the
/// page itself, what it shows, and its frames, each with what stands in it. Nothing if `mhtml` has no page in
/// it. Any thread.
std::optional<std::string> webArchiveFromMHTML(std::string_view mhtml);

/// The engine leaves the document type out, and a page without one is laid out by old rules. Puts it back in
/// front of the first part. Any thread.
std::string mhtmlWithDoctype(std::string mhtml);

}  // namespace platform
