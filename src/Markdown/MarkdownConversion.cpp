#include "Markdown/MarkdownConversion.h"

#include "Platform/DispatchQueue.h"

#include <utility>

namespace velkin {

MarkdownConversion::~MarkdownConversion() {
  if (thread_.joinable()) thread_.join();
}

void MarkdownConversion::convert(const Parser& parser, const std::string& text, Show show) {
  if (text.size() <= longestAtOnce) {
    waiting_.reset();
    show_ = {};
    show(parser->html(text));
    return;
  }
  Request request{parser, text, std::move(show)};
  if (isUnderWay_) {
    waiting_ = std::move(request);
  } else {
    start(std::move(request));
  }
}

void MarkdownConversion::start(Request request) {
  isUnderWay_ = true;
  show_ = std::move(request.show);
  if (thread_.joinable()) thread_.join();
  thread_ = std::thread([this, alive = isAlive_.watch(), &queue = platform::DispatchQueue::main(),
                         parser = std::move(request.parser), text = std::move(request.text)] {
    queue.async([this, alive, html = parser->html(text)] {
      if (alive) ended(html);
    });
  });
}

void MarkdownConversion::ended(const std::string& html) {
  isUnderWay_ = false;
  if (const auto show = std::exchange(show_, {})) show(html);
  // Showing may have led to a next text.
  if (isUnderWay_ || !waiting_) return;
  start(*std::exchange(waiting_, std::nullopt));
}

}  // namespace velkin
