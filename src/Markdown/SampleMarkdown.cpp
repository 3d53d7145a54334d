#include "Markdown/SampleMarkdown.h"

namespace velkin {

const std::string_view sampleMarkdown = R"(# Sample Markdown ✎

## Markdown syntax supported

This scratchpad supports the syntax below. [What the engine does](docs/markdown-engine.md) tells it in full.

- Headings: `# H1`, `## H2`, `### H3`, `#### H4`, `##### H5`, `###### H6`
- Italic text: `*italic*` is *italic*
- Bold text: `**bold**` is **bold**
- Bold and italic text: `***both***` is ***both***
- Struck text: `~~struck~~` is ~~struck~~
- Links: `[title](address)`
- Links by name: `[title][name]`, and `[name]: address` on a line of its own
- Images: `![description](address)`
- Inline code: one backtick on each side, as in `code`
- Code blocks: three backticks above and below
- Bullet lists: `- item`
- Numbered lists: `1. item`
- Nested lists: `  - item` with two blanks more
- Tables: `| Header1 | Header2 |`, then `| ------ | ------ |`
- Columns to the right: `| -----: |`
- Quotes: `> quote`
- Rules: `---`
- HTML: `<b>text</b>`
- Marks as they are: `\*` with a backslash

> Write on the left, and read on the right.

| What | How |
| ------ | ------ |
| Bold | two stars |
| Italic | one star |

```
A block of code
```

---

1. Take this text away,
2. and write your own.
)";

const std::string_view sampleUnformattedMarkdown = R"(Sample Markdown ✎

Markdown syntax supported

This scratchpad supports the syntax below. What the engine does tells it in full.

Headings: H1, H2, H3, H4, H5, H6
Italic text: italic
Bold text: bold
Bold and italic text: both
Struck text: struck
Links: title
Links by name: title
Images: description
Inline code: one backtick on each side, as in code
Code blocks: three backticks above and below
Bullet lists: item
Numbered lists: item
Nested lists: item
Tables: Header1, Header2
Columns to the right
Quotes: quote
Rules
HTML: text
Marks as they are, with a backslash

Write on the left, and read on the right.

What, How
Bold, two stars
Italic, one star

A block of code

Take this text away,
and write your own.
)";

}  // namespace velkin
