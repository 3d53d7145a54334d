#include "Platform/URL.h"
#include "gtest/gtest.h"

namespace platform {
namespace {

std::string parsed(std::string_view text) {
  const auto url = URL::parse(text);
  return url ? url->absoluteString() : "refused";
}

TEST(URLTest, wellFormedAddressesAreKeptAsTheyAre) {
  for (const char* text :
       {"https://example.org/", "https://example.org", "HTTP://User:pw@Example.org:8080/a/b;c?d=e&f#g/h?i",
        "http://127.0.0.1:8471/chat", "http://[::1]:80/", "http://[v7.a:b]/", "mailto:someone@example.org",
        "file:///tmp/x", "a:b", "http://", "https://example.org/%7Euser?x=%20", "http://host:/",
        "about:blank"}) {
    EXPECT_EQ(parsed(text), text);
  }
}

TEST(URLTest, relativeReferencesParse) {
  for (const char* text :
       {"foo", "/", "/a:b", "./a:b", "?q", "#f", "//host/path", "example.org/x", "*", "a@b"}) {
    EXPECT_EQ(parsed(text), text);
  }
}

TEST(URLTest, anEmptyTextIsRefused) { EXPECT_EQ(parsed(""), "refused"); }

TEST(URLTest, blanksAndControlCharactersAreRefused) {
  for (const std::string_view text :
       {std::string_view("Enter Url"), std::string_view(" https://example.org"),
        std::string_view("https://example.org "), std::string_view("https://example.org/a\nb"),
        std::string_view("\t"), std::string_view("a\0b", 3), std::string_view("a\x7F")}) {
    EXPECT_EQ(parsed(text), "refused") << text;
  }
}

TEST(URLTest, charactersThatNoAddressMayHoldAreRefused) {
  for (const char bad : std::string_view("\"<>\\^`{|}")) {
    EXPECT_EQ(parsed(std::string("https://example.org/") + bad), "refused") << bad;
  }
  EXPECT_EQ(parsed("https://example.org/[a]"), "refused");
  EXPECT_EQ(parsed("https://example.org/?[a]"), "refused");
  EXPECT_EQ(parsed("a#b#c"), "refused");
}

TEST(URLTest, aStrayPercentSignIsRefused) {
  for (const char* text :
       {"%", "a%", "a%2", "a%2G", "a%GG", "http://a/%%20", "http://a/?%zz", "http://a/#%1"}) {
    EXPECT_EQ(parsed(text), "refused") << text;
  }
  EXPECT_EQ(parsed("a%2f"), "a%2f");
}

TEST(URLTest, badSchemesHostsAndPortsAreRefused) {
  for (const char* text :
       {":", ":foo", "1a:b", "a_b:c", "http://host:80a/", "http://a:b:1/", "http://[::1", "http://[::1]x/",
        "http://[zz]/", "http://[]/", "http://::1/", "http://ho[st/", "http://a@b@c/", "http://[v.a]/"}) {
    EXPECT_EQ(parsed(text), "refused") << text;
  }
}

TEST(URLTest, charactersOutsideASCIIArePercentEncoded) {
  EXPECT_EQ(parsed("https://example.org/\xC3\xA4?\xE2\x82\xAC#\xF0\x9F\xA4\x96"),
            "https://example.org/%C3%A4?%E2%82%AC#%F0%9F%A4%96");
  EXPECT_EQ(parsed("https://b\xC3\xBC"
                   "cher.example/"),
            "https://b%C3%BCcher.example/");
}

TEST(URLTest, bytesThatAreNotUTF8AreRefused) {
  EXPECT_EQ(parsed("https://example.org/\xFF"), "refused");
  EXPECT_EQ(parsed("https://example.org/\xC3"), "refused");
}

TEST(URLTest, thePartsAreTold) {
  const auto url = URL::parse("https://user@example.org:8080/a%20b/c?d#e");
  ASSERT_TRUE(url);
  EXPECT_EQ(url->scheme(), "https");
  EXPECT_EQ(url->host(), "example.org");
  EXPECT_EQ(url->path(), "/a%20b/c");
}

TEST(URLTest, absentPartsAreNothing) {
  EXPECT_EQ(URL::parse("foo")->scheme(), std::nullopt);
  EXPECT_EQ(URL::parse("foo")->host(), std::nullopt);
  EXPECT_EQ(URL::parse("foo")->path(), "foo");
  EXPECT_EQ(URL::parse("mailto:a@b")->host(), std::nullopt);
  EXPECT_EQ(URL::parse("file:///x")->host(), std::nullopt);
  EXPECT_EQ(URL::parse("https://example.org")->path(), "");
  EXPECT_EQ(URL::parse("https://[::1]:80/")->host(), "::1");
}

TEST(URLTest, whatAnEngineReportsIsTakenAsItIsOnTheWire) {
  const auto reported = [](std::string_view text) {
    const auto url = URL::parseReported(text);
    return url ? url->absoluteString() : "refused";
  };
  EXPECT_EQ(reported("https://example.org/a[1]{2}|^?q=[x]|{y}^#[z]"),
            "https://example.org/a%5B1%5D%7B2%7D%7C%5E?q=%5Bx%5D%7C%7By%7D%5E#%5Bz%5D");
  EXPECT_EQ(reported("https://example.org/a b\"<>`\\"), "https://example.org/a%20b%22%3C%3E%60%5C");
  EXPECT_EQ(reported("https://example.org/100%"), "https://example.org/100%25");
  EXPECT_EQ(reported("https://example.org/%5B?a=%20"), "https://example.org/%5B?a=%20") << "encoded once";
  EXPECT_EQ(reported("https://[::1]:80/[a]"), "https://[::1]:80/%5Ba%5D");
  EXPECT_EQ(reported("https://example.org/\xC3\xA4|"), "https://example.org/%C3%A4%7C");
  EXPECT_EQ(reported("https://exa mple.org/"), "refused") << "a host is no place for them";
  EXPECT_EQ(reported(""), "refused");
}

TEST(URLTest, storedAddressesKeepTheStrictRule) {
  EXPECT_FALSE(URL::parse("https://example.org/a[1]"));
  EXPECT_FALSE(URL::parse("https://example.org/a|b"));
  EXPECT_FALSE(URL::parse("https://example.org/?q={x}"));
}

TEST(URLTest, addressesAreEqualByTheirText) {
  EXPECT_EQ(URL::parse("https://a/"), URL::parse("https://a/"));
  EXPECT_NE(URL::parse("https://a/"), URL::parse("https://a"));
}

}  // namespace
}  // namespace platform
