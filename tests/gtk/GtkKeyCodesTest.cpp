#include "Platform/Gtk/GtkKeyCodes.h"

#include <map>

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

namespace platform {
namespace {

constexpr unsigned offset = 8;
using Printed = std::map<unsigned, char32_t>;

CharacterAt layoutOf(Printed printed) {
  return [printed = std::move(printed)](unsigned hardware) -> char32_t {
    const auto found = printed.find(hardware - offset);
    return found == printed.end() ? 0 : found->second;
  };
}

const auto azerty = layoutOf({{KEY_Q, U'a'},
                              {KEY_A, U'q'},
                              {KEY_SEMICOLON, U'm'},
                              {KEY_M, U','},
                              {KEY_1, U'&'},
                              {KEY_4, U'\''},
                              {KEY_6, U'-'},
                              {KEY_0, U'à'},
                              {KEY_MINUS, U')'},
                              {KEY_EQUAL, U'='},
                              {KEY_F, U'f'}});
const auto german = layoutOf({{KEY_Y, U'z'},
                              {KEY_Z, U'y'},
                              {KEY_LEFTBRACE, U'ü'},
                              {KEY_RIGHTBRACE, U'+'},
                              {KEY_SLASH, U'-'},
                              {KEY_MINUS, U'ß'}});

TEST(GtkKeyCodesTest, LettersHaveTheirCodeWhereverTheyAre) {
  EXPECT_EQ(keyCodeOf(KEY_Q + offset, azerty), 0x00);
  EXPECT_EQ(keyCodeOf(KEY_A + offset, azerty), 0x0C);
  EXPECT_EQ(keyCodeOf(KEY_SEMICOLON + offset, azerty), 0x2E);
  EXPECT_EQ(keyCodeOf(KEY_M + offset, azerty), 0x2B) << "the comma";
  EXPECT_EQ(keyCodeOf(KEY_Z + offset, german), 0x10);
}

TEST(GtkKeyCodesTest, MarksTooAndPlusCountsAsEqual) {
  EXPECT_EQ(keyCodeOf(KEY_6 + offset, azerty), 0x1B);
  EXPECT_EQ(keyCodeOf(KEY_SLASH + offset, german), 0x1B);
  EXPECT_EQ(keyCodeOf(KEY_RIGHTBRACE + offset, german), 0x18);
}

TEST(GtkKeyCodesTest, TheGroupsDigitsKeepTheirPlaces) {
  EXPECT_EQ(keyCodeOf(KEY_1 + offset, azerty), 0x12);
  EXPECT_EQ(keyCodeOf(KEY_4 + offset, azerty), 0x15);
  EXPECT_EQ(keyCodeOf(KEY_0 + offset, azerty), 0x1D);
}

TEST(GtkKeyCodesTest, AllElseHasTheCodeOfItsPlace) {
  EXPECT_EQ(keyCodeOf(KEY_LEFTBRACE + offset, german), 0x21);
  EXPECT_EQ(keyCodeOf(KEY_MINUS + offset, azerty), 0x1B);
  EXPECT_EQ(keyCodeOf(KEY_ESC + offset, azerty), 0x35);
  EXPECT_EQ(keyCodeOf(KEY_KP1 + offset, layoutOf({{KEY_KP1, U'1'}})), 0x53) << "the keypad is none of it";
  EXPECT_EQ(keyCodeOf(5000, azerty), std::nullopt);
}

TEST(GtkKeyCodesTest, APlaceIsFoundForACodeTheSameWay) {
  EXPECT_EQ(placeOf(0x00, azerty), KEY_Q + offset);
  EXPECT_EQ(placeOf(0x0C, azerty), KEY_A + offset);
  EXPECT_EQ(placeOf(0x03, azerty), KEY_F + offset);
  EXPECT_EQ(placeOf(0x35, azerty), KEY_ESC + offset);
  EXPECT_EQ(placeOf(0x10, german), KEY_Z + offset);
  EXPECT_EQ(placeOf(0x11, layoutOf({})), KEY_T + offset) << "a layout without letters";
  EXPECT_EQ(placeOf(0xFFFF, azerty), std::nullopt);
}

}  // namespace
}  // namespace platform
