#include "Platform/PropertyList.h"
#include "Platform/UTF8.h"
#include "gtest/gtest.h"
#include "plist/plist.h"
#include "unit/Repetitions.h"

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

namespace platform {
namespace {

using Value = PropertyListValue;
using namespace std::string_literals;

std::optional<Value> roundTrip(const Value& value) {
  const auto xml = writeXMLPropertyList(value);
  return xml ? readPropertyList(*xml) : std::nullopt;
}

std::string listOf(const std::string& element) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict><key>a</key>" + element +
         "</dict></plist>";
}

std::optional<Value> valueIn(const std::string& element) {
  const auto list = readPropertyList(listOf(element));
  return list ? std::optional(list->as<Value::Dictionary>()->at("a")) : std::nullopt;
}

TEST(PropertyListTest, everyTypeComesBackAsItWasWritten) {
  const Value whole = Value::Dictionary{
      {"true", true},
      {"false", false},
      {"integer", 23},
      {"negative", -1},
      {"largest", std::numeric_limits<std::int64_t>::max()},
      {"smallest", std::numeric_limits<std::int64_t>::min()},
      {"real", 1.2},
      {"text", "chat"},
      {"empty text", ""},
      {"data", Value::Data{0, 1, 255}},
      {"no data", Value::Data{}},
      {"date", Value::Date{712'000'000}},
      {"array", Value::Array{1, "two", 3.5, Value::Array{}}},
      {"dictionary", Value::Dictionary{{"inner", Value::Dictionary{}}}},
  };
  EXPECT_EQ(roundTrip(whole), whole);
}

TEST(PropertyListTest, realsComeBackToTheLastBit) {
  for (const double real : {1.0 / 3, 0.1, 1e300, 5e-324, -0.25, 600.0, 1'700'000'000.123456, 1.45, 0.0}) {
    const auto back = roundTrip(Value(real));
    ASSERT_TRUE(back && back->as<double>()) << real;
    EXPECT_EQ(*back->as<double>(), real);
  }
}

TEST(PropertyListTest, aRealWithNoFractionStaysAReal) {
  const auto back = roundTrip(Value(600.0));
  ASSERT_TRUE(back);
  EXPECT_NE(back->as<double>(), nullptr);
  EXPECT_EQ(back->as<std::int64_t>(), nullptr);
}

TEST(PropertyListTest, realsThatAreNoNumbersComeBack) {
  EXPECT_EQ(roundTrip(Value(std::numeric_limits<double>::infinity())),
            Value(std::numeric_limits<double>::infinity()));
  EXPECT_EQ(roundTrip(Value(-std::numeric_limits<double>::infinity())),
            Value(-std::numeric_limits<double>::infinity()));
  const auto nan = roundTrip(Value(std::nan("")));
  ASSERT_TRUE(nan && nan->as<double>());
  EXPECT_TRUE(std::isnan(*nan->as<double>()));
}

TEST(PropertyListTest, textsComeBackByteForByte) {
  for (const char* text : {"  two blanks ", "\n", "line\r\nline\r", "<&>\"' ]]> &amp; &#13;", "tab\t",
                           "\xE2\x82\xAC \xF0\x9F\xA4\x96", "a\xCC\x8A", "{\n  \"searches\" : [\n\n  ]\n}",
                           "https:\\/\\/example.org"}) {
    EXPECT_EQ(roundTrip(Value(text)), Value(text));
  }
}

TEST(PropertyListTest, keysComeBackByteForByte) {
  const Value whole = Value::Dictionary{{"", 1}, {" <&> ", 2}, {"\xC3\xA9\r", 3}};
  EXPECT_EQ(roundTrip(whole), whole);
}

TEST(PropertyListTest, whatXMLHasNoFormForBecomesAReplacementCharacter) {
  const std::string mark = "\xEF\xBF\xBD";
  EXPECT_EQ(roundTrip(Value("a\0b"s)), Value("a" + mark + "b"));
  EXPECT_EQ(roundTrip(Value("\x01\x1F"s)), Value(mark + mark));
  EXPECT_EQ(roundTrip(Value("\xEF\xBF\xBF\xEF\xBF\xBE"s)), Value(mark + mark));
}

TEST(PropertyListTest, bytesThatAreNotUTF8BecomeReplacementCharacters) {
  const std::string mark = "\xEF\xBF\xBD";
  EXPECT_EQ(roundTrip(Value("\xFFx"s)), Value(mark + "x"));
  EXPECT_EQ(roundTrip(Value("cut \xE2\x82"s)), Value("cut " + mark));
  EXPECT_EQ(roundTrip(Value("\xC0\xAF"s)), Value(mark + mark)) << "overlong form";
  EXPECT_EQ(roundTrip(Value("\xED\xA0\x80"s)), Value(mark + mark + mark)) << "surrogate";
  EXPECT_EQ(roundTrip(Value("\xF4\x90\x80\x80"s)), Value(mark + mark + mark + mark)) << "beyond U+10FFFF";
}

TEST(PropertyListTest, badBytesInAKeyOrDeepInsideDoNotHarmTheRest) {
  const Value whole = Value::Dictionary{{"k\0\xFF"s, Value::Array{"\x02"s}}, {"good", 1}};
  const auto back = roundTrip(whole);
  ASSERT_TRUE(back);
  const auto& dictionary = *back->as<Value::Dictionary>();
  EXPECT_EQ(dictionary.at("good"), Value(1));
  EXPECT_EQ(dictionary.at("k\xEF\xBF\xBD\xEF\xBF\xBD"), Value(Value::Array{"\xEF\xBF\xBD"}));
}

TEST(PropertyListTest, whatIsStorableIsWhatComesBack) {
  const Value odd =
      Value::Dictionary{{"a\0"s, "\xFF"s}, {"date", Value::Date{-4.5}}, {"far", Value::Date{1e18}}};
  EXPECT_EQ(roundTrip(odd), storable(odd));
}

TEST(PropertyListTest, datesKeepWholeSecondsInsideTheirRange) {
  EXPECT_EQ(roundTrip(Value::Date{-4.5}), Value(Value::Date{-5}));
  EXPECT_EQ(roundTrip(Value::Date{1e12}), Value(Value::Date{2147483647}));
  EXPECT_EQ(roundTrip(Value::Date{-1e12}), Value(Value::Date{-2147483648.0}));
  EXPECT_EQ(roundTrip(Value::Date{std::nan("")}), Value(Value::Date{0}));
}

TEST(PropertyListTest, theFileIsWellFormedXML) {
  const auto xml = writeXMLPropertyList(Value::Dictionary{{"zoomLevel", 1.2}, {"text", "a\r<b>"}});
  ASSERT_TRUE(xml);
  EXPECT_TRUE(xml->starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>")) << *xml;
  EXPECT_NE(xml->find("<key>zoomLevel</key>\n\t<real>1.2</real>"), xml->npos) << *xml;
  EXPECT_NE(xml->find("<string>a&#13;&lt;b&gt;</string>"), xml->npos) << *xml;
}

TEST(PropertyListTest, whatIsNoWholeListIsNothing) {
  const auto whole = writeXMLPropertyList(Value::Dictionary{{"key", "value"}, {"array", Value::Array{1, 2}}});
  ASSERT_TRUE(whole);
  for (const std::string& bytes :
       {""s, "<plist"s, "hello"s, "\0\1\2\3noise"s, "{\"a\":1}"s, "bplist00"s,
        "<plist version=\"1.0\"></plist>"s, listOf("<foo>x</foo>"), listOf("<string>a\0b</string>"s)}) {
    EXPECT_FALSE(readPropertyList(bytes)) << bytes;
  }
  const auto end = whole->find("</dict>");
  for (std::size_t length = 0; length < end; ++length) {
    EXPECT_FALSE(readPropertyList(whole->substr(0, length))) << "cut at " << length;
  }
}

TEST(PropertyListTest, nestingBeyondAllReasonIsRefused) {
  for (const int depth : {600, 9'000, 200'000}) {
    std::string deep;
    for (int i = 0; i < depth; ++i) deep += "<array>";
    for (int i = 0; i < depth; ++i) deep += "</array>";
    EXPECT_FALSE(readPropertyList(listOf(deep))) << depth;
  }
}

TEST(PropertyListTest, nestingThatIsOnlyUnusualIsRead) {
  Value deep = Value::Array{};
  for (int i = 0; i < 400; ++i) deep = Value::Array{deep};
  EXPECT_EQ(roundTrip(deep), deep);
}

/// A binary list of arrays, each holding the next one.
std::string deepBinaryList(std::uint32_t depth) {
  const auto bigEndian = [](std::uint64_t number, int size) {
    std::string bytes;
    for (int i = size - 1; i >= 0; --i) bytes += static_cast<char>(number >> (8 * i));
    return bytes;
  };
  std::string list = "bplist00";
  std::string offsets;
  for (std::uint32_t i = 0; i < depth; ++i) {
    offsets += bigEndian(list.size(), 4);
    list += i + 1 < depth ? "\xA1" + bigEndian(i + 1, 4) : std::string("\xA0");
  }
  const auto table = list.size();
  return list + offsets + std::string(6, '\0') + "\x04\x04" + bigEndian(depth, 8) + bigEndian(0, 8) +
         bigEndian(table, 8);
}

TEST(PropertyListTest, nestingBeyondAllReasonIsRefusedInABinaryListToo) {
  EXPECT_TRUE(readPropertyList(deepBinaryList(100)));
  EXPECT_FALSE(readPropertyList(deepBinaryList(1000)));
  EXPECT_FALSE(readPropertyList(deepBinaryList(9'000)));
  EXPECT_FALSE(readPropertyList(deepBinaryList(500'000)));
}

TEST(PropertyListTest, otherWritersFormsAreRead) {
  EXPECT_EQ(valueIn("<!-- comment --><true/>"), Value(true));
  EXPECT_EQ(valueIn("<string><![CDATA[x<y]]></string>"), Value("x<y"));
  EXPECT_EQ(valueIn("<string>&#x20AC;</string>"), Value("\xE2\x82\xAC"));
  EXPECT_EQ(valueIn("<integer>0x10</integer>"), Value(16));
  EXPECT_EQ(valueIn("<integer>-9223372036854775808</integer>"),
            Value(std::numeric_limits<std::int64_t>::min()));
}

std::string binaryOf(const std::string& xml) {
  plist_t node = nullptr;
  plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &node);
  char* bytes = nullptr;
  std::uint32_t length = 0;
  plist_to_bin(node, &bytes, &length);
  std::string result(bytes, length);
  // The name of the library's own function for it differs from version to version; it is this one in all.
  std::free(bytes);
  plist_free(node);
  return result;
}

TEST(PropertyListTest, aBinaryListIsRead) {
  const Value whole = Value::Dictionary{{"zoom", 1.2},
                                        {"on", true},
                                        {"count", -7},
                                        {"text", "\xE2\x82\xAC"},
                                        {"data", Value::Data{1, 0, 2}},
                                        {"list", Value::Array{"x", 2}}};
  const auto bytes = binaryOf(*writeXMLPropertyList(whole));
  ASSERT_TRUE(bytes.starts_with("bplist00"));
  EXPECT_EQ(readPropertyList(bytes), whole);
}

TEST(PropertyListTest, aNULInABinaryListsKeyIsRefusedAndNotFatal) {
  auto bytes = binaryOf("<plist version=\"1.0\"><dict><key>\xC3\xA9zoom</key><true/></dict></plist>");
  const auto letter = bytes.find('z');
  ASSERT_NE(letter, bytes.npos) << "the key stands there as UTF-16";
  bytes[letter] = '\0';
  EXPECT_FALSE(readPropertyList(bytes));
}

TEST(PropertyListTest, aBinaryListWithAnyByteChangedNeverCrashes) {
  const auto good =
      binaryOf(listOf("<array><string>text</string><integer>5</integer><real>2.5</real>"
                      "<data>AAEC</data><dict><key>b</key><true/></dict></array>"));
  int readable = 0;
  for (std::size_t at = 0; at < good.size(); ++at) {
    for (const int flip : {0x01, 0x10, 0x80, 0xFF}) {
      auto bytes = good;
      bytes[at] = static_cast<char>(bytes[at] ^ flip);
      readable += readPropertyList(bytes) ? 1 : 0;
    }
  }
  EXPECT_GT(readable, 0);
  EXPECT_LT(readable, static_cast<int>(good.size() * 4));
}

TEST(PropertyListTest, anIntegerNeverEqualsARealOrABoolean) {
  EXPECT_NE(Value(1), Value(1.0));
  EXPECT_NE(Value(1), Value(true));
  EXPECT_NE(Value("1"), Value(1));
}

TEST(PropertyListTest, aTextLiteralIsATextAndNotABoolean) {
  EXPECT_NE(Value("x").as<std::string>(), nullptr);
}

TEST(PropertyListTest, numbersDoNotDependOnTheLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  const char* comma = nullptr;
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "it_IT.UTF-8"}) {
    comma = comma ? comma : std::setlocale(LC_ALL, name);
  }
  if (comma == nullptr) GTEST_SKIP() << "no locale with a decimal comma on this machine";
  const auto xml = writeXMLPropertyList(Value(1.2));
  const auto back = readPropertyList("<plist version=\"1.0\"><real>1.2</real></plist>");
  std::setlocale(LC_ALL, before.c_str());
  EXPECT_NE(xml->find("<real>1.2</real>"), xml->npos) << *xml;
  EXPECT_EQ(back, Value(1.2));
}

TEST(PropertyListEntitiesTest, ATextOfNothingButEntitiesIsReadInNoTimeToSpeakOf) {
  // The library itself takes hours for it.
  std::string text;
  for (int i = 0; i < velkin::repetitions(1'000'000); ++i) text += "<&>\r";
  EXPECT_EQ(roundTrip(Value::Dictionary{{"a&b", text}}), Value(Value::Dictionary{{"a&b", text}}));
}

TEST(PropertyListEntitiesTest, CharactersOfPrivateUseAreNotTakenForThem) {
  std::string all;
  for (char32_t c = 0xE000; c < 0xF000; ++c) {
    if (c % 5 != 0) appendUTF8(all, c);
  }
  for (const std::string& text :
       std::vector<std::string>{"\xEE\x80\x80&\xEE\x80\x81<", "&", "<" + all + "&"}) {
    EXPECT_EQ(roundTrip(Value::Dictionary{{text, text}}), Value(Value::Dictionary{{text, text}}));
  }
}

TEST(PropertyListEntitiesTest, InACharacterDataSectionAnEntityIsNone) {
  const auto read = readPropertyList(
      "<plist "
      "version=\"1.0\"><array><string><![CDATA[a&amp;b]]></string><string>&lt;&#65;&quot;</string></array></"
      "plist>");
  ASSERT_TRUE(read);
  EXPECT_EQ(*read, Value(Value::Array{"a&amp;b", "<A\""}));
}

TEST(PropertyListExtentTest, IsNeverLessThanTheListTakesAndLittleMore) {
  PropertyListValue::Dictionary everything = {
      {"flag", true},
      {"integer", std::numeric_limits<std::int64_t>::min()},
      {"real", -1.2345678901234567e-300},
      {"text & <tags>", "a & b < c > d \r\n"},
      {"amps", std::string(10'000, '&')},
      {"plain", std::string(10'000, 'x')},
      {"data", PropertyListValue::Data(10'000, 7)},
      {"date", PropertyListValue::Date{1}},
      {"array", PropertyListValue::Array{1, "two", PropertyListValue::Array{}}}};
  for (const auto& [key, value] : everything) {
    const PropertyListValue::Dictionary alone = {{key, value}};
    const auto taken =
        writeXMLPropertyList(alone)->size() - writeXMLPropertyList(PropertyListValue::Dictionary{})->size();
    const auto told = extentOf(key, value).bytes;
    EXPECT_GE(told, taken) << key;
    EXPECT_LE(told, 2 * taken + 300) << key;
  }
  PropertyListValue nested = PropertyListValue::Data(2000, 1);
  for (int i = 0; i < 300; ++i) nested = PropertyListValue::Array{nested, "text"};
  EXPECT_GE(extentOf(nested).bytes + 300, writeXMLPropertyList(nested)->size());
  EXPECT_EQ(extentOf(nested).depth, 300);
  EXPECT_EQ(extentOf(nested).containers, 300U);
}

}  // namespace
}  // namespace platform
