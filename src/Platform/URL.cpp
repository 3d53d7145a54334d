#include "Platform/URL.h"

#include "Platform/UTF8.h"

#include <algorithm>
#include <array>

#include <arpa/inet.h>

namespace platform {

namespace {

constexpr std::string_view unreservedMarks = "-._~";
constexpr std::string_view subDelimiters = "!$&'()*+,;=";

bool isLetter(char c) noexcept { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }
bool isHexDigit(char c) noexcept { return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }
bool isPlain(char c) noexcept {
  return isLetter(c) || isDigit(c) || unreservedMarks.find(c) != unreservedMarks.npos ||
         subDelimiters.find(c) != subDelimiters.npos;
}

/// The five parts of an address, as RFC 3986 cuts them. A part that is absent differs from an empty one.
struct Parts {
  std::optional<std::string_view> scheme;
  std::optional<std::string_view> authority;
  std::string_view path;
  std::optional<std::string_view> query;
  std::optional<std::string_view> fragment;
};

Parts partsOf(std::string_view text) {
  Parts parts;
  if (const auto hash = text.find('#'); hash != text.npos) {
    parts.fragment = text.substr(hash + 1);
    text = text.substr(0, hash);
  }
  if (const auto mark = text.find('?'); mark != text.npos) {
    parts.query = text.substr(mark + 1);
    text = text.substr(0, mark);
  }
  if (const auto colon = text.find(':'); colon < text.find('/')) {
    parts.scheme = text.substr(0, colon);
    text.remove_prefix(colon + 1);
  }
  if (text.starts_with("//")) {
    text.remove_prefix(2);
    const auto end = std::min(text.find('/'), text.size());
    parts.authority = text.substr(0, end);
    text.remove_prefix(end);
  }
  parts.path = text;
  return parts;
}

struct Authority {
  std::string_view user;
  std::string_view host;
  std::string_view port;
};

Authority authorityOf(std::string_view text) {
  Authority authority;
  if (const auto at = text.rfind('@'); at != text.npos) {
    authority.user = text.substr(0, at);
    text.remove_prefix(at + 1);
  }
  const auto bracket = text.starts_with('[') ? text.find(']') : text.npos;
  const auto colon = text.find(':', bracket == text.npos ? 0 : bracket);
  authority.host = text.substr(0, colon);
  if (colon != text.npos) authority.port = text.substr(colon + 1);
  return authority;
}

/// True if `text` is made of plain characters, percent-encoded bytes and those in `more`.
bool isMadeOf(std::string_view text, std::string_view more) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%') {
      if (i + 2 >= text.size() || !isHexDigit(text[i + 1]) || !isHexDigit(text[i + 2])) return false;
      i += 2;
    } else if (!isPlain(text[i]) && more.find(text[i]) == more.npos) {
      return false;
    }
  }
  return true;
}

bool isScheme(std::string_view text) {
  return !text.empty() && isLetter(text.front()) && std::all_of(text.begin(), text.end(), [](char c) {
    return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.';
  });
}

bool isAddressLiteral(std::string_view text) {
  // "v", hex digits, a dot and the address: a form kept for address families to come.
  if (!text.empty() && (text.front() == 'v' || text.front() == 'V')) {
    const auto dot = text.find('.');
    if (dot == text.npos || dot < 2 || dot + 1 == text.size()) return false;
    const auto version = text.substr(1, dot - 1);
    const auto rest = text.substr(dot + 1);
    return std::all_of(version.begin(), version.end(), isHexDigit) &&
           std::all_of(rest.begin(), rest.end(), [](char c) { return isPlain(c) || c == ':'; });
  }
  std::array<unsigned char, sizeof(in6_addr)> address{};
  return inet_pton(AF_INET6, std::string(text).c_str(), address.data()) == 1;
}

bool isAuthority(std::string_view text) {
  const auto [user, host, port] = authorityOf(text);
  const bool isLiteral = host.starts_with('[');
  if (isLiteral && (!host.ends_with(']') || !isAddressLiteral(host.substr(1, host.size() - 2)))) return false;
  return isMadeOf(user, ":") && (isLiteral || isMadeOf(host, "")) &&
         std::all_of(port.begin(), port.end(), isDigit);
}

void addEncoded(std::string& text, char byte) {
  constexpr std::string_view hexDigits = "0123456789ABCDEF";
  const auto value = static_cast<unsigned char>(byte);
  text += '%';
  text += hexDigits[value >> 4U];
  text += hexDigits[value & 0xFU];
}

std::optional<std::string> percentEncoded(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const auto before = text;
    if (!takeCharacter(text)) return std::nullopt;
    const auto bytes = before.substr(0, before.size() - text.size());
    if (bytes.size() == 1) {
      result += bytes.front();
      continue;
    }
    for (const char byte : bytes) addEncoded(result, byte);
  }
  return result;
}

}  // namespace

std::optional<URL> URL::parse(std::string_view text) {
  auto encoded = percentEncoded(text);
  if (!encoded || encoded->empty()) return std::nullopt;
  const auto parts = partsOf(*encoded);
  const bool isGood = (!parts.scheme || isScheme(*parts.scheme)) &&
                      (!parts.authority || isAuthority(*parts.authority)) && isMadeOf(parts.path, ":@/") &&
                      isMadeOf(parts.query.value_or(""), ":@/?") &&
                      isMadeOf(parts.fragment.value_or(""), ":@/?");
  if (!isGood) return std::nullopt;
  return URL(*std::move(encoded));
}

std::optional<URL> URL::parseReported(std::string_view text) {
  if (auto url = parse(text)) return url;
  const auto parts = partsOf(text);
  std::string encoded;
  if (parts.scheme) encoded.append(*parts.scheme) += ':';
  if (parts.authority) encoded.append("//").append(*parts.authority);
  const auto add = [&](std::string_view part, std::string_view allowed) {
    for (std::size_t i = 0; i < part.size(); ++i) {
      const char c = part[i];
      const bool isEncoded =
          c == '%' && i + 2 < part.size() && isHexDigit(part[i + 1]) && isHexDigit(part[i + 2]);
      const bool isBeyondAscii = (static_cast<unsigned char>(c) & 0x80U) != 0;
      if (isEncoded || isBeyondAscii || isPlain(c) || allowed.find(c) != allowed.npos) {
        encoded += c;
      } else {
        addEncoded(encoded, c);
      }
    }
  };
  add(parts.path, ":@/");
  if (parts.query) {
    encoded += '?';
    add(*parts.query, ":@/?");
  }
  if (parts.fragment) {
    encoded += '#';
    add(*parts.fragment, ":@/?");
  }
  return parse(encoded);
}

std::optional<std::string> URL::scheme() const {
  const auto parts = partsOf(text_);
  return parts.scheme ? std::optional(std::string(*parts.scheme)) : std::nullopt;
}

std::optional<std::string> URL::host() const {
  const auto parts = partsOf(text_);
  if (!parts.authority) return std::nullopt;
  auto host = authorityOf(*parts.authority).host;
  if (host.starts_with('[')) host = host.substr(1, host.size() - 2);
  return host.empty() ? std::nullopt : std::optional(std::string(host));
}

std::string URL::path() const { return std::string(partsOf(text_).path); }

}  // namespace platform
