#include "Values/PrettyJSON.h"
#include "gtest/gtest.h"

#include <limits>

#include <nlohmann/json.hpp>

namespace velkin {
namespace {

using Json = nlohmann::ordered_json;

std::string pretty(const Json& value) { return prettyJSON(value).value_or("error"); }

TEST(PrettyJSONTest, objectsKeepTheirOrderAndHaveBlanksRoundTheColon) {
  EXPECT_EQ(pretty({{"z", 1}, {"a", true}, {"m", nullptr}}),
            "{\n  \"z\" : 1,\n  \"a\" : true,\n  \"m\" : null\n}");
}

TEST(PrettyJSONTest, emptyContainersHoldAnEmptyLine) {
  EXPECT_EQ(pretty(Json::array()), "[\n\n]");
  EXPECT_EQ(pretty(Json::object()), "{\n\n}");
  EXPECT_EQ(pretty({{"a", Json::array()}, {"b", Json::object()}}),
            "{\n  \"a\" : [\n\n  ],\n  \"b\" : {\n\n  }\n}");
}

TEST(PrettyJSONTest, arraysPutEachItemOnItsLine) {
  EXPECT_EQ(pretty(Json::array({1, "two", Json::array({3})})), "[\n  1,\n  \"two\",\n  [\n    3\n  ]\n]");
}

TEST(PrettyJSONTest, textsAreEscaped) {
  EXPECT_EQ(pretty("\"\\/\b\f\n\r\t"), "\"\\\"\\\\\\/\\b\\f\\n\\r\\t\"");
  EXPECT_EQ(pretty(std::string("\0\x01\x1F", 3)), "\"\\u0000\\u0001\\u001f\"");
  EXPECT_EQ(pretty("\x7F"), "\"\x7F\"");
  EXPECT_EQ(pretty("\xC3\xA9\xF0\x9F\xA4\x96"), "\"\xC3\xA9\xF0\x9F\xA4\x96\"")
      << "not escaped outside ASCII";
  EXPECT_EQ(pretty({{"a/b", 1}}), "{\n  \"a\\/b\" : 1\n}");
}

TEST(PrettyJSONTest, bytesThatAreNotUTF8BecomeReplacementCharacters) {
  EXPECT_EQ(pretty("a\xFF"), "\"a\xEF\xBF\xBD\"");
}

TEST(PrettyJSONTest, numbersAreAsShortAsTheyCanBeReadBack) {
  EXPECT_EQ(pretty(600.0), "600");
  EXPECT_EQ(pretty(1.2), "1.2");
  EXPECT_EQ(pretty(0.1), "0.1");
  EXPECT_EQ(pretty(-5), "-5");
  EXPECT_EQ(pretty(712345678.123456), "712345678.123456");
  EXPECT_EQ(pretty(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

TEST(PrettyJSONTest, aNumberThatIsNotFiniteIsAnError) {
  EXPECT_FALSE(prettyJSON(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_FALSE(prettyJSON({{"a", Json::array({std::numeric_limits<double>::infinity()})}}));
}

}  // namespace
}  // namespace velkin
