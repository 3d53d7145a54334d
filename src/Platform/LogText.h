#pragma once

#include <string>
#include <string_view>

namespace platform {

struct NSError;

// The log is kept by the desktop, and read by others than the user. So it holds no key that was pressed, no
// prompt, no text of a page, no stored value and no address beyond its host. What comes from outside (a page,
// a server, the bus, a library's message) goes into a line by one of these only.

/// At the most 200 characters of `text`, without control characters and marks that turn a line's direction;
/// "…" stands for what was cut off. Any thread.
std::string forLog(std::string_view text);

/// The scheme and the host of an address, and "…" if there was more: "https://example.org…". The scheme alone
/// where there is no host. Any thread.
std::string addressForLog(std::string_view address);

/// What a script failed with: the error's domain and code, and which of the language's own errors it was. Its
/// words are a page's words, or hold the script's text. Any thread.
std::string scriptErrorForLog(const NSError& error);

/// How long a text is that isn't for the log: "a text of 5 characters". Any thread.
std::string lengthForLog(std::string_view text);

/// The whole line as it may be written, whoever made its parts: no control characters, at the most `most`
/// characters. Any thread.
std::string cleanLine(std::string_view line, std::size_t most);

}  // namespace platform
