#pragma once

#include "MarkdownEngine/MarkdownParser.h"
#include "Platform/Alive.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace velkin {

/// Makes HTML of one text after the other: at once as a rule, and on a thread of its own for a text that is
/// long enough to be felt in the keys behind it. What is shown is never older than what was shown before it,
/// and the newest is shown in the end. Main thread.
class MarkdownConversion {
 public:
  using Parser = std::shared_ptr<const markdown::MarkdownParser>;
  /// Takes the fragment, on the main thread.
  using Show = std::function<void(const std::string& html)>;

  /// Bytes up to which a text is converted at once.
  static constexpr std::size_t longestAtOnce = 1'000'000;

  MarkdownConversion() = default;
  /// Waits for the conversion that is under way; it isn't shown.
  ~MarkdownConversion();
  MarkdownConversion(const MarkdownConversion&) = delete;
  MarkdownConversion& operator=(const MarkdownConversion&) = delete;

  /// `show` is called before this returns, or in a later turn. A long text that comes while another one is
  /// converted waits, and takes the place of one that waits already.
  void convert(const Parser& parser, const std::string& text, Show show);

 private:
  struct Request {
    Parser parser;
    std::string text;
    Show show;
  };

  void start(Request request);
  void ended(const std::string& html);

  std::thread thread_;
  /// Of the conversion that is under way; empty where its text isn't wanted any more.
  Show show_;
  bool isUnderWay_ = false;
  std::optional<Request> waiting_;
  platform::Alive isAlive_;
};

}  // namespace velkin
