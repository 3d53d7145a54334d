#include "Platform/WebArchive.h"

#include "Platform/PropertyList.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <utility>
#include <vector>

namespace platform {

namespace {

using Headers = std::map<std::string, std::string, std::less<>>;

struct Part {
  std::string type;
  std::string charset;
  std::string location;
  std::string data;
};

std::string lowercase(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), [](unsigned char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : static_cast<char>(c);
  });
  return result;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const auto begin = text.find_first_not_of(blanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

/// Takes the line off, without its end.
std::string_view takeLine(std::string_view& text) {
  const auto end = text.find('\n');
  auto line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

/// Takes the headers off and the empty line behind them. Names in lower case.
Headers takeHeaders(std::string_view& text) {
  Headers headers;
  auto last = headers.end();
  while (!text.empty()) {
    const auto line = takeLine(text);
    if (line.empty()) break;
    if ((line.front() == ' ' || line.front() == '\t') && last != headers.end()) {
      last->second.append(" ").append(trimmed(line));
      continue;
    }
    const auto colon = line.find(':');
    if (colon == std::string_view::npos) continue;
    last = headers
               .insert_or_assign(lowercase(trimmed(line.substr(0, colon))),
                                 std::string(trimmed(line.substr(colon + 1))))
               .first;
  }
  return headers;
}

std::string_view header(const Headers& headers, std::string_view name) {
  const auto found = headers.find(name);
  return found == headers.end() ? std::string_view() : std::string_view(found->second);
}

/// Of `multipart/related; boundary="..."`; the name in lower case.
std::string parameter(std::string_view value, std::string_view name) {
  for (auto rest = value; !rest.empty();) {
    const auto semicolon = rest.find(';');
    if (semicolon == std::string_view::npos) return {};
    rest.remove_prefix(semicolon + 1);
    const auto equals = rest.find('=');
    if (equals == std::string_view::npos) return {};
    if (lowercase(trimmed(rest.substr(0, equals))) != name) continue;
    auto text = trimmed(rest.substr(equals + 1));
    if (text.starts_with('"')) return std::string(text.substr(1, text.find('"', 1) - 1));
    return std::string(trimmed(text.substr(0, text.find(';'))));
  }
  return {};
}

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

std::string fromQuotedPrintable(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '=') {
      result += text[i];
      continue;
    }
    const auto rest = text.substr(i + 1);
    if (rest.starts_with("\r\n")) {
      i += 2;
    } else if (rest.starts_with('\n')) {
      i += 1;
    } else if (rest.size() >= 2 && hexDigit(rest[0]) >= 0 && hexDigit(rest[1]) >= 0) {
      result += static_cast<char>(hexDigit(rest[0]) * 16 + hexDigit(rest[1]));
      i += 2;
    } else {
      result += '=';
    }
  }
  return result;
}

std::string fromBase64(std::string_view text) {
  constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  static constexpr auto values = [&] {
    std::array<signed char, 256> table{};
    table.fill(-1);
    for (std::size_t i = 0; i < alphabet.size(); ++i) {
      table[static_cast<unsigned char>(alphabet[i])] = static_cast<signed char>(i);
    }
    return table;
  }();
  std::string result;
  result.reserve(text.size() / 4 * 3);
  std::uint32_t bits = 0;
  int count = 0;
  for (const unsigned char c : text) {
    if (values[c] < 0) continue;
    bits = bits << 6U | static_cast<std::uint32_t>(values[c]);
    if (++count % 4 == 0) {
      for (const int shift : {16, 8, 0})
        result += static_cast<char>(bits >> static_cast<unsigned>(shift) & 0xFFU);
    }
  }
  if (count % 4 == 2) result += static_cast<char>(bits >> 4U & 0xFFU);
  if (count % 4 == 3) {
    result += static_cast<char>(bits >> 10U & 0xFFU);
    result += static_cast<char>(bits >> 2U & 0xFFU);
  }
  return result;
}

Part readPart(std::string_view text) {
  const auto headers = takeHeaders(text);
  const auto type = header(headers, "content-type");
  const auto encoding = lowercase(header(headers, "content-transfer-encoding"));
  Part part{.type = lowercase(trimmed(type.substr(0, type.find(';')))),
            .charset = parameter(type, "charset"),
            .location = std::string(header(headers, "content-location"))};
  if (encoding == "quoted-printable") {
    part.data = fromQuotedPrintable(text);
  } else if (encoding == "base64") {
    part.data = fromBase64(text);
  } else {
    part.data = std::string(text);
  }
  return part;
}

/// The stretches between the lines that begin with the boundary.
std::vector<std::string_view> split(std::string_view body, const std::string& boundary) {
  const auto mark = "--" + boundary;
  std::vector<std::string_view> parts;
  const char* begin = nullptr;
  const char* const end = body.data() + body.size();
  while (!body.empty()) {
    const char* const lineBegin = body.data();
    const auto line = takeLine(body);
    if (!line.starts_with(mark)) continue;
    if (begin != nullptr) {
      std::string_view part(begin, static_cast<std::size_t>(lineBegin - begin));
      // The end of line before the boundary belongs to it.
      if (part.ends_with('\n')) part.remove_suffix(1);
      if (part.ends_with('\r')) part.remove_suffix(1);
      parts.push_back(part);
    }
    if (line.starts_with(mark + "--")) return parts;
    begin = body.data();
  }
  // Cut off: what is there still counts.
  if (begin != nullptr) parts.emplace_back(begin, static_cast<std::size_t>(end - begin));
  return parts;
}

std::vector<Part> readParts(std::string_view mhtml) {
  const auto headers = takeHeaders(mhtml);
  const auto boundary = parameter(header(headers, "content-type"), "boundary");
  std::vector<Part> parts;
  if (boundary.empty()) return parts;
  for (const auto& text : split(mhtml, boundary)) parts.push_back(readPart(text));
  return parts;
}

bool isPage(const Part& part) { return part.type == "text/html" || part.type == "application/xhtml+xml"; }

/// An address as a page writes it, too, which has its ampersands escaped.
bool mentions(const Part& page, const std::string& address) {
  if (address.empty()) return false;
  if (page.data.find(address) != std::string::npos) return true;
  std::string escaped;
  for (const char c : address) {
    if (c == '&') {
      escaped += "&amp;";
    } else {
      escaped += c;
    }
  }
  return escaped != address && page.data.find(escaped) != std::string::npos;
}

PropertyListValue::Dictionary resource(const Part& part) {
  PropertyListValue::Dictionary dictionary = {
      {"WebResourceURL", part.location},
      {"WebResourceMIMEType", part.type},
      {"WebResourceData", PropertyListValue::Data(part.data.begin(), part.data.end())}};
  if (isPage(part)) {
    dictionary.emplace("WebResourceFrameName", "");
    dictionary.emplace("WebResourceTextEncodingName", part.charset.empty() ? "UTF-8" : part.charset);
  } else if (!part.charset.empty()) {
    dictionary.emplace("WebResourceTextEncodingName", part.charset);
  }
  return dictionary;
}

class ArchiveWriter {
 public:
  explicit ArchiveWriter(std::vector<Part> parts) : parts_(std::move(parts)), owners_(parts_.size()) {
    for (std::size_t i = 1; i < parts_.size(); ++i) owners_[i] = ownersOf(i);
  }

  PropertyListValue::Dictionary archive(std::size_t page) const {
    PropertyListValue::Dictionary dictionary = {{"WebMainResource", resource(parts_[page])}};
    PropertyListValue::Array resources;
    PropertyListValue::Array frames;
    for (std::size_t i = 1; i < parts_.size(); ++i) {
      if (std::ranges::find(owners_[i], page) == owners_[i].end()) continue;
      if (isPage(parts_[i])) {
        frames.emplace_back(archive(i));
      } else {
        resources.emplace_back(resource(parts_[i]));
      }
    }
    if (!resources.empty()) dictionary.emplace("WebSubresources", std::move(resources));
    if (!frames.empty()) dictionary.emplace("WebSubframeArchives", std::move(frames));
    return dictionary;
  }

 private:
  /// A frame stands in one page, which comes before it; what a page shows may be in several. What nobody
  /// names (a picture of a style sheet, say) is the page's own.
  std::vector<std::size_t> ownersOf(std::size_t part) const {
    std::vector<std::size_t> owners;
    for (std::size_t page = 0; page < parts_.size(); ++page) {
      if (page == part || !isPage(parts_[page]) || !mentions(parts_[page], parts_[part].location)) continue;
      if (isPage(parts_[part])) {
        if (page < part) return {page};
      } else {
        owners.push_back(page);
      }
    }
    if (owners.empty()) owners.push_back(0);
    return owners;
  }

  std::vector<Part> parts_;
  std::vector<std::vector<std::size_t>> owners_;
};

}  // namespace

std::optional<std::string> webArchiveFromMHTML(std::string_view mhtml) {
  auto parts = readParts(mhtml);
  const auto main = std::ranges::find_if(parts, isPage);
  if (main == parts.end()) return std::nullopt;
  std::rotate(parts.begin(), main, std::next(main));
  return writeXMLPropertyList(ArchiveWriter(std::move(parts)).archive(0));
}

std::string mhtmlWithDoctype(std::string mhtml) {
  std::string_view rest = mhtml;
  const auto boundary = parameter(header(takeHeaders(rest), "content-type"), "boundary");
  if (boundary.empty()) return mhtml;
  while (!rest.empty() && !takeLine(rest).starts_with("--" + boundary)) {
  }
  const auto headers = takeHeaders(rest);
  if (rest.empty() || lowercase(header(headers, "content-transfer-encoding")) == "base64") return mhtml;
  const auto place = static_cast<std::size_t>(rest.data() - mhtml.data());
  if (lowercase(trimmed(rest).substr(0, 9)) == "<!doctype") return mhtml;
  mhtml.insert(place, "<!DOCTYPE html>");
  return mhtml;
}

}  // namespace platform
