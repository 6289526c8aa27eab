#include "model/text.h"

#include <gtest/gtest.h>

namespace velgrove {
namespace {

TEST(Text, EveryByteOfTheCodePageComesBackTheSame) {
  for (int value = 0; value < 256; ++value) {
    const std::string byte(1, static_cast<char>(value));
    const auto text = utf8FromCodePage(byte);
    EXPECT_EQ(characterCount(text), 1U) << value;
    EXPECT_EQ(codePageFromUtf8(text), byte) << value;
  }
  EXPECT_EQ(utf8FromCodePage("\x80\x99\xE9\x81"), "\xE2\x82\xAC\xE2\x84\xA2\xC3\xA9\xC2\x81");
}

TEST(Text, WhatTheCodePageLacksAndWhatIsNoTextBecomesAQuestionMarkEach) {
  EXPECT_EQ(codePageFromUtf8("\xD0\xAF\xF0\x9F\x8E\xAD"), "??");
  EXPECT_EQ(codePageFromUtf8("\xC2\x80"), "?") << "a control character whose byte means the euro";
  EXPECT_EQ(codePageFromUtf8("a\xFF\xC3"), "a??") << "no lead byte, and a lead byte alone";
  EXPECT_EQ(codePageFromUtf8("\xC0\xAF"), "??") << "a longer sequence than needed";
  EXPECT_EQ(codePageFromUtf8("\xED\xA0\x80"), "???") << "half a surrogate pair";
  EXPECT_EQ(codePageFromUtf8("\xF4\x90\x80\x80"), "????") << "beyond the last code point";
}

TEST(Text, FixedTextsAreCutAndFilledByCharactersAndNotByBytes) {
  FixedText<4> name;
  EXPECT_EQ(name.str(), "    ");
  name = "\xC3\xA9t\xC3\xA9";
  EXPECT_EQ(name.str(), "\xC3\xA9t\xC3\xA9 ");
  name = "\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC";
  EXPECT_EQ(codePageFromUtf8(name.str()), "\x80\x80\x80\x80");
  name = "abcdef";
  EXPECT_EQ(name.str(), "abcd");
}

}  // namespace
}  // namespace velgrove
