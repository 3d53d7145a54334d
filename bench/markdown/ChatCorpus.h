#pragma once

#include <cstddef>
#include <string>

/// A text that looks like a chat's answers, the same one for the same size: paragraphs, nested lists, fenced
/// code, tables, links, emphasis, quotes and some text beyond ASCII.
[[nodiscard]] std::string makeChatCorpus(std::size_t size);
