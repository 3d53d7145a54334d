#include "Platform/PropertyList.h"
#include "Platform/WebArchive.h"

#include <string>

#include <gtest/gtest.h>

namespace platform {
namespace {

using Dictionary = PropertyListValue::Dictionary;
using Array = PropertyListValue::Array;

constexpr const char* crlf = "\r\n";

std::string lines(std::initializer_list<std::string> all) {
  std::string text;
  for (const auto& line : all) text.append(line).append(crlf);
  return text;
}

std::string part(const std::string& type, const std::string& encoding, const std::string& location,
                 const std::string& body) {
  return lines({"--edge", "Content-Type: " + type, "Content-Transfer-Encoding: " + encoding,
                "Content-Location: " + location, "", body});
}

std::string mail(const std::string& parts) {
  return lines({"From: <Saved>", "MIME-Version: 1.0", "Content-Type: multipart/related;",
                "\ttype=\"text/html\"; boundary=\"edge\"", ""}) +
         parts + lines({"--edge--"});
}

class WebArchiveTest : public testing::Test {
 protected:
  void read(const std::string& mhtml) {
    const auto bytes = webArchiveFromMHTML(mhtml);
    ASSERT_TRUE(bytes);
    const auto list = readPropertyList(*bytes);
    ASSERT_TRUE(list);
    ASSERT_NE(list->as<Dictionary>(), nullptr);
    archive = *list->as<Dictionary>();
  }
  static const Dictionary& main(const Dictionary& of) {
    return *of.find("WebMainResource")->second.as<Dictionary>();
  }
  static std::string text(const Dictionary& resource, const char* key) {
    const auto found = resource.find(key);
    if (found == resource.end()) return "(none)";
    if (const auto* data = found->second.as<PropertyListValue::Data>()) return {data->begin(), data->end()};
    return *found->second.as<std::string>();
  }
  static std::vector<Dictionary> list(const Dictionary& of, const char* key) {
    std::vector<Dictionary> all;
    const auto found = of.find(key);
    if (found == of.end()) return all;
    for (const auto& one : *found->second.as<Array>()) all.push_back(*one.as<Dictionary>());
    return all;
  }
  Dictionary archive;
};

TEST_F(WebArchiveTest, APageAloneIsItsMainResource) {
  read(mail(part("text/html; charset=\"utf-8\"", "quoted-printable", "https://a.example/",
                 "<p class=3D\"x\">caf=C3=A9 and a=\r\n word</p>")));
  EXPECT_EQ(text(main(archive), "WebResourceData"), "<p class=\"x\">café and a word</p>");
  EXPECT_EQ(text(main(archive), "WebResourceURL"), "https://a.example/");
  EXPECT_EQ(text(main(archive), "WebResourceMIMEType"), "text/html");
  EXPECT_EQ(text(main(archive), "WebResourceTextEncodingName"), "utf-8");
  EXPECT_EQ(text(main(archive), "WebResourceFrameName"), "");
  EXPECT_EQ(archive.size(), 1U);
}

TEST_F(WebArchiveTest, BinaryPartsKeepEachByte) {
  read(mail(
      part("text/html", "quoted-printable", "https://a.example/", "<img src=3D\"https://a.example/p\">") +
      part("image/png", "base64", "https://a.example/p", "AAEC/f7/\r\nDQo=")));
  const auto resources = list(archive, "WebSubresources");
  ASSERT_EQ(resources.size(), 1U);
  EXPECT_EQ(text(resources[0], "WebResourceData"), std::string("\x00\x01\x02\xfd\xfe\xff\r\n", 8));
  EXPECT_EQ(text(resources[0], "WebResourceMIMEType"), "image/png");
  EXPECT_EQ(text(resources[0], "WebResourceTextEncodingName"), "(none)");
}

TEST_F(WebArchiveTest, FramesStandInThePageThatNamesThemWithWhatTheyShow) {
  read(mail(
      part("text/html", "7bit", "https://a.example/", "<iframe src=\"https://b.example/?x=1&amp;y=2\">") +
      part("text/html", "7bit", "https://b.example/?x=1&y=2",
           "<iframe src='https://c.example/'></iframe><img src='https://b.example/i'>") +
      part("text/html", "7bit", "https://c.example/", "innermost") +
      part("image/gif", "base64", "https://b.example/i", "R0lG") +
      part("text/css", "7bit", "https://a.example/nobody-names-me", "p {}")));
  const auto frames = list(archive, "WebSubframeArchives");
  ASSERT_EQ(frames.size(), 1U);
  EXPECT_EQ(text(main(frames[0]), "WebResourceURL"), "https://b.example/?x=1&y=2");
  ASSERT_EQ(list(frames[0], "WebSubresources").size(), 1U);
  EXPECT_EQ(text(list(frames[0], "WebSubresources")[0], "WebResourceData"), "GIF");
  const auto inner = list(frames[0], "WebSubframeArchives");
  ASSERT_EQ(inner.size(), 1U);
  EXPECT_EQ(text(main(inner[0]), "WebResourceData"), "innermost");
  const auto resources = list(archive, "WebSubresources");
  ASSERT_EQ(resources.size(), 1U) << "what nobody names is the page's own";
  EXPECT_EQ(text(resources[0], "WebResourceData"), "p {}");
}

TEST_F(WebArchiveTest, LineEndsOfUnixAndABoundaryWithoutQuotesAreRead) {
  read(
      "Content-Type: multipart/related; boundary=edge; x=y\n\n--edge\nContent-Type: "
      "text/html\n\nhello\n--edge--\n");
  EXPECT_EQ(text(main(archive), "WebResourceData"), "hello");
}

TEST_F(WebArchiveTest, WhatWasCutOffIsKept) {
  read("Content-Type: multipart/related; boundary=edge\n\n--edge\nContent-Type: text/html\n\nhel");
  EXPECT_EQ(text(main(archive), "WebResourceData"), "hel");
}

TEST_F(WebArchiveTest, WhatIsNoMailHasNoPage) {
  for (const auto* none :
       {"", "hello", "Content-Type: text/html\n\n<p>", "Content-Type: multipart/related\n\n--x",
        "Content-Type: multipart/related; boundary=\"x\n\n", "\n\n--edge\n\n--edge--"}) {
    EXPECT_FALSE(webArchiveFromMHTML(none)) << none;
  }
  EXPECT_FALSE(webArchiveFromMHTML(mail(part("image/png", "base64", "https://a.example/", "AAAA"))));
}

TEST_F(WebArchiveTest, ThousandsOfFramesAreJustMany) {
  std::string parts = part("text/html", "7bit", "https://a.example/", "main");
  for (int i = 0; i < 2000; ++i) {
    parts += part("text/html", "7bit", "https://f.example/" + std::to_string(i) + "/", "frame");
  }
  const auto bytes = webArchiveFromMHTML(mail(parts));
  ASSERT_TRUE(bytes);
  EXPECT_NE(bytes->find("https://f.example/1999/"), std::string::npos);
}

TEST_F(WebArchiveTest, TheDocumentTypeIsPutBackOnce) {
  const auto page = mail(part("text/html", "quoted-printable", "https://a.example/", "<html></html>"));
  const auto once = mhtmlWithDoctype(page);
  read(once);
  EXPECT_EQ(text(main(archive), "WebResourceData"), "<!DOCTYPE html><html></html>");
  EXPECT_EQ(mhtmlWithDoctype(once), once);
  EXPECT_EQ(mhtmlWithDoctype("no mail"), "no mail");
  const auto binary = mail(part("text/html", "base64", "https://a.example/", "PHA+"));
  EXPECT_EQ(mhtmlWithDoctype(binary), binary);
}

}  // namespace
}  // namespace platform
