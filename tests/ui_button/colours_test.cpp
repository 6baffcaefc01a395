#include "ui/button/colours.h"

#include <gtest/gtest.h>

namespace cvl {
namespace {

TEST(TranslateColor, LeavesAColourOfItsOwnAsItStands) {
  EXPECT_EQ(TranslateColor(0), 0U);
  EXPECT_EQ(TranslateColor(0x123456), 0x123456U);
  EXPECT_EQ(TranslateColor(0xFFFFFF), 0xFFFFFFU);
}

TEST(TranslateColor, LooksTheColoursOfTheSystemUpByTheirLowByte) {
  EXPECT_EQ(TranslateColor(0x8000000F), 0xC0C0C0U) << "button face";
  EXPECT_EQ(TranslateColor(0x80000010), 0x808080U) << "button shadow";
  EXPECT_EQ(TranslateColor(0x80000012), 0x000000U) << "button text";
  EXPECT_EQ(TranslateColor(0x80000014), 0xFFFFFFU) << "3D highlight";
  EXPECT_EQ(TranslateColor(0x80000015), 0x000000U) << "3D dark shadow";
  EXPECT_EQ(TranslateColor(0x80000016), 0xDFDFDFU) << "3D light";
  EXPECT_EQ(TranslateColor(0x80ABCD0F), 0xC0C0C0U) << "the bytes between don't count";
}

TEST(TranslateColor, HasBlueInTheUpperByte) {
  EXPECT_EQ(TranslateColor(0x8000000D), 0x800000U) << "highlight, a dark blue";
  EXPECT_EQ(TranslateColor(0x80000001), 0x808000U) << "desktop";
  EXPECT_EQ(TranslateColor(0x80000018), 0xE1FFFFU) << "tip, a light yellow";
}

TEST(TranslateColor, LooksUpAnyNumberAboveTheColours) {
  EXPECT_EQ(TranslateColor(0x0100000F), 0xC0C0C0U);
  EXPECT_EQ(TranslateColor(0x01000000 | 20), 0xFFFFFFU);
}

TEST(TranslateColor, IsBlackForANumberThatTheSchemeHasNot) {
  EXPECT_EQ(TranslateColor(0x80000019), 0U);
  EXPECT_EQ(TranslateColor(0xFFFFFFFF), 0U);
}

TEST(ColorShift, AddsToEachComponent) {
  EXPECT_EQ(ColorShift(0x102030, 5), 0x152535U);
  EXPECT_EQ(ColorShift(0x102030, -16), 0x001020U);
}

TEST(ColorShift, StopsAtBothEnds) {
  EXPECT_EQ(ColorShift(0xFE80FF, 1), 0xFF81FFU);
  EXPECT_EQ(ColorShift(0xFE80FF, 2), 0xFF82FFU);
  EXPECT_EQ(ColorShift(0x018002, -2), 0x007E00U);
  EXPECT_EQ(ColorShift(0x102030, 32767), 0xFFFFFFU);
  EXPECT_EQ(ColorShift(0x102030, -32768), 0x000000U);
}

TEST(ColorShift, TranslatesFirst) {
  EXPECT_EQ(ColorShift(system_colour::ButtonFace, 48), 0xF0F0F0U);
}

TEST(ColorShift, AddsRedGreenAndBlueEachToItsOwn) {
  EXPECT_EQ(ColorShift(Rgb(10, 20, 30), 1, 2, 3), Rgb(11, 22, 33));
  EXPECT_EQ(ColorShift(system_colour::Highlight, 171, 154, 200), Rgb(171, 154, 255));
}

TEST(PixelOf, PutsRedFirst) {
  EXPECT_EQ(PixelOf(0x00AABBCC), 0xFFCCBBAAU);
  EXPECT_EQ(PixelOf(Rgb(0x12, 0x34, 0x56)), 0xFF123456U);
  EXPECT_EQ(PixelOf(system_colour::Highlight), 0xFF000080U);
}

TEST(ColourOfPixel, IsTheWayBack) {
  EXPECT_EQ(ColourOfPixel(0xFF123456), 0x563412U);
  EXPECT_EQ(ColourOfPixel(0x00123456), 0x563412U);
}

}  // namespace
}  // namespace cvl
