#include "platform/registry_encoding.h"

#include <gtest/gtest.h>

namespace cvl {
namespace {

using namespace std::string_literals;

TEST(DecodeRegistry, TakesBytesWithoutAMarkAsUtf8) {
  const auto text = DecodeRegistry("a\xC3\xA4");
  ASSERT_TRUE(text);
  EXPECT_EQ(text->Utf8, "a\xC3\xA4");
  EXPECT_EQ(text->Encoding, RegistryEncoding::Utf8);
}

TEST(DecodeRegistry, TakesTheMarkOfUtf8OffAndKnowsOfIt) {
  const auto text = DecodeRegistry("\xEF\xBB\xBF;");
  ASSERT_TRUE(text);
  EXPECT_EQ(text->Utf8, ";");
  EXPECT_EQ(text->Encoding, RegistryEncoding::MarkedUtf8);
  EXPECT_EQ(EncodeRegistry(*text), "\xEF\xBB\xBF;");
}

TEST(DecodeRegistry, TurnsUtf16IntoUtf8) {
  const auto text = DecodeRegistry("\xFF\xFE"s + "A\0\xE4\0\xAC\x20\x3D\xD8\x00\xDE"s);
  ASSERT_TRUE(text);
  EXPECT_EQ(text->Utf8, "A\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(text->Encoding, RegistryEncoding::Utf16);
}

TEST(DecodeRegistry, RefusesHalfACharacterOfUtf16) {
  EXPECT_TRUE(DecodeRegistry("\xFF\xFE"s + "A\0"s));
  EXPECT_FALSE(DecodeRegistry("\xFF\xFE"s + "A\0B"s));
}

TEST(EncodeRegistry, GivesEveryUnitOfUtf16BackAsItWas) {
  // Each unit there is, in an order that makes pairs of surrogates, halves of pairs and
  // pairs the wrong way round.
  std::string bytes = "\xFF\xFE";
  for (unsigned unit = 1; unit <= 0xFFFF; ++unit) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
    if (unit >= 0xD800 && unit < 0xDC00) {
      bytes += static_cast<char>(unit * 7 & 0xFF);
      bytes += static_cast<char>(unit % 2 == 0 ? 0xDC + unit % 4 : 0x20);
    }
  }
  const auto text = DecodeRegistry(bytes);
  ASSERT_TRUE(text);
  EXPECT_EQ(EncodeRegistry(*text), bytes);
}

TEST(Latin1Of, MakesEachCharacterAByte) {
  EXPECT_EQ(Latin1Of("Zeit \xC3\xA4\xC3\xBF"), "Zeit \xE4\xFF");
}

TEST(Latin1Of, PutsAQuestionMarkForWhatLatin1Lacks) {
  EXPECT_EQ(Latin1Of("\xC3\xBF|\xC4\x80|\xE2\x82\xAC|\xF0\x9F\x98\x80"), "\xFF|?|?|?");
}

TEST(Latin1Of, TakesAStrayByteForItself) {
  EXPECT_EQ(Latin1Of("\xE4 \xC3"), "\xE4 \xC3");
  EXPECT_EQ(Latin1Of("\xC0\x80"), "\xC0\x80");         // longer than it need be
  EXPECT_EQ(Latin1Of("\xF4\x90\x80\x80").size(), 4U);  // beyond the last character
  EXPECT_EQ(Latin1Of("\xF4\x8F\xBF\xBF"), "?");
}

TEST(Latin1Of, ComesBackFromUtf8Of) {
  std::string latin1;
  for (int c = 0; c <= 0xFF; ++c) {
    latin1 += static_cast<char>(c);
  }
  EXPECT_EQ(Latin1Of(Utf8Of(latin1)), latin1);
}

TEST(Latin1OfUtf16, DropsHalfACharacter) {
  EXPECT_EQ(Latin1OfUtf16("A\0\xE4\0\xAC\x20\0\0B"s), "A\xE4?\0"s);
}

}  // namespace
}  // namespace cvl
