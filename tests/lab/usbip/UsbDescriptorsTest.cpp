// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "boards/Rig.h"
#include "usbip/UsbDescriptors.h"

namespace quillon::usbip {
namespace {

using ::testing::ElementsAre;

sim::WiredBoard Joystick(bool flash_mode) {
  sim::BoardSpec spec;
  spec.id = "joystick";
  spec.product = 0x0910;
  spec.product_text = "QJ";
  spec.manufacturer = "";
  spec.serial = "017";
  spec.firmware = 0x0282;
  spec.loader = 0x0105;
  spec.flash_mode = flash_mode;
  return sim::WiredBoard(spec);
}

TEST(UsbDescriptors, DescribeAJoystickInItsTwoModes) {
  const UsbDescriptors device_mode = Describe(Joystick(false));
  EXPECT_EQ(device_mode.device, (Bytes{18, 1, 0x00, 0x02, 0, 0, 0, 64,  //
                                       0x7E, 0x4C, 0x10, 0x09,          // vendor, product
                                       0x82, 0x02,                      // version
                                       0, 1, 2,                         // no text, texts 1 and 2
                                       1}));
  EXPECT_EQ(device_mode.configuration,
            (Bytes{9, 2,    66,   0,    2,  1, 0,    0x80, 50,  // 66 bytes, 2 interfaces
                   9, 4,    0,    0,    1,  3, 0,    0,    0,   // interface 0: for games
                   9, 0x21, 0x11, 0x01, 0,  1, 0x22, 22,   0,   // its HID descriptor
                   7, 5,    0x81, 3,    64, 0, 1,               // endpoint 1 IN
                   9, 4,    1,    0,    2,  3, 0,    0,    0,   // interface 1: for settings
                   9, 0x21, 0x11, 0x01, 0,  1, 0x22, 25,   0,   // its HID descriptor
                   7, 5,    0x82, 3,    64, 0, 1,               // endpoint 2 IN
                   7, 5,    0x02, 3,    64, 0, 1}));            // endpoint 2 OUT
  EXPECT_THAT(device_mode.strings, ElementsAre(Bytes{4, 3, 0x09, 0x04}, Bytes{6, 3, 'Q', 0, 'J', 0},
                                               Bytes{8, 3, '0', 0, '1', 0, '7', 0}));

  const UsbDescriptors flash_mode = Describe(Joystick(true));
  EXPECT_THAT(Bytes(flash_mode.device.begin() + 12, flash_mode.device.begin() + 14),
              ElementsAre(0x05, 0x01));
  EXPECT_EQ(flash_mode.configuration,
            (Bytes{9, 2,    41,   0,    1,  1, 0,    0x80, 50,  // one interface
                   9, 4,    0,    0,    2,  3, 0,    0,    0,   //
                   9, 0x21, 0x11, 0x01, 0,  1, 0x22, 25,   0,   // its HID descriptor
                   7, 5,    0x81, 3,    64, 0, 1,               // endpoint 1 IN
                   7, 5,    0x01, 3,    64, 0, 1}));            // endpoint 1 OUT
}

TEST(UsbDescriptors, TextsBecomeUtf16WhateverTheirBytes) {
  const struct {
    const char* about;
    std::string text;
    Bytes units;
  } cases[] = {
      {"two, three and four bytes",
       "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x95\xB9",
       {0xE9, 0x00, 0xAC, 0x20, 0x3D, 0xD8, 0x79, 0xDD}},
      {"the last character", "\xF4\x8F\xBF\xBF", {0xFF, 0xDB, 0xFF, 0xDF}},
      {"beyond the last", "\xF4\x90\x80\x80", {0xFD, 0xFF, 0xFD, 0xFF, 0xFD, 0xFF, 0xFD, 0xFF}},
      {"a byte of no character", "a\xFFz", {'a', 0, 0xFD, 0xFF, 'z', 0}},
      {"a continuation alone", "\x80", {0xFD, 0xFF}},
      {"cut at the end", "a\xE2\x82", {'a', 0, 0xFD, 0xFF, 0xFD, 0xFF}},
      {"not continued", "\xC3z", {0xFD, 0xFF, 'z', 0}},
      {"longer than need be", "\xC0\x80", {0xFD, 0xFF, 0xFD, 0xFF}},
      {"a surrogate", "\xED\xA0\x80", {0xFD, 0xFF, 0xFD, 0xFF, 0xFD, 0xFF}},
      {"a zero", std::string("a\0b", 3), {'a', 0, 0, 0, 'b', 0}},
  };
  for (const auto& [about, text, units] : cases) {
    Bytes expected = {static_cast<std::uint8_t>(2 + units.size()), 3};
    expected.insert(expected.end(), units.begin(), units.end());
    EXPECT_EQ(StringDescriptor(text), expected) << about;
  }
}

TEST(UsbDescriptors, LongTextsAreCutBetweenCharacters) {
  const Bytes whole = StringDescriptor(std::string(126, 'x'));
  ASSERT_EQ(whole.size(), 254U);
  EXPECT_EQ(whole[0], 254);
  EXPECT_EQ(StringDescriptor(std::string(260, 'x')), whole);
  // The 126th unit would be the first half of a pair.
  const Bytes cut = StringDescriptor(std::string(125, 'x') + "\xF0\x9F\x95\xB9");
  EXPECT_EQ(cut[0], 252);
  EXPECT_EQ(cut.size(), 252U);
}

}  // namespace
}  // namespace quillon::usbip
