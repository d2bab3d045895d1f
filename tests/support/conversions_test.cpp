#include "support/conversions.h"

#include "harness/errors.h"

namespace tlpacscfg {
namespace {

TEST(ConversionsTest, DecimalNumbersAreNumeric) {
  for (const wchar_t* text : {L"0", L"12", L"-1", L"+7", L" 5 ", L"1.5", L".5", L"2.", L"1e3",
                              L"-1E-3", L"99999999999999999999"}) {
    EXPECT_TRUE(isNumeric(text)) << text;
  }
}

TEST(ConversionsTest, OtherTextsAreNotNumeric) {
  for (const wchar_t* text : {L"", L" ", L"x", L"12a", L"1 2", L"--1", L"+-1", L"-+1", L"nan",
                              L"inf", L".", L"-", L"1e", L"e5", L"0x10", L"1\t", L"٣"}) {
    EXPECT_FALSE(isNumeric(text)) << text;
  }
}

TEST(ConversionsTest, WholeNumbersConvert) {
  EXPECT_EQ(toInt16(L"12"), 12);
  EXPECT_EQ(toInt16(L" -1 "), -1);
  EXPECT_EQ(toInt16(L"0007"), 7);
  EXPECT_EQ(toInt32(L"65000"), 65000);
}

TEST(ConversionsTest, HalvesRoundToTheEvenNumber) {
  EXPECT_EQ(toInt16(L"0.5"), 0);
  EXPECT_EQ(toInt16(L"1.5"), 2);
  EXPECT_EQ(toInt16(L"2.5"), 2);
  EXPECT_EQ(toInt16(L"-2.5"), -2);
  EXPECT_EQ(toInt32(L"2.51"), 3);
}

TEST(ConversionsTest, SixteenBitsHaveTheirLimits) {
  EXPECT_EQ(toInt16(L"32767"), 32767);
  EXPECT_EQ(toInt16(L"-32768"), -32768);
  EXPECT_EQ(toInt16(L"32767.4"), 32767);
  EXPECT_OVERFLOW(toInt16(L"32768"));
  EXPECT_OVERFLOW(toInt16(L"-32769"));
  EXPECT_OVERFLOW(toInt16(L"32767.5"));
  EXPECT_OVERFLOW(toInt16(L"1e400"));
  EXPECT_OVERFLOW(toInt16(std::int64_t{32768}));
  EXPECT_OVERFLOW(toInt16(std::int64_t{-32769}));
  EXPECT_EQ(toInt16(std::int64_t{-32768}), -32768);
  EXPECT_OVERFLOW(toInt16(40000.0));
}

TEST(ConversionsTest, ThirtyTwoBitsHaveTheirLimits) {
  EXPECT_EQ(toInt32(L"2147483647"), 2147483647);
  EXPECT_EQ(toInt32(L"-2147483648"), -2147483647 - 1);
  EXPECT_OVERFLOW(toInt32(L"2147483648"));
  EXPECT_OVERFLOW(toInt32(L"-2147483649"));
  EXPECT_OVERFLOW(toInt32(3e9));
  EXPECT_EQ(toInt32(-7.0), -7);
}

TEST(ConversionsTest, ATextThatIsNoNumberDoesNotConvert) {
  EXPECT_TYPE_MISMATCH(toInt16(L""));
  EXPECT_TYPE_MISMATCH(toInt16(L"x"));
  EXPECT_TYPE_MISMATCH(toInt32(L"12a"));
  EXPECT_TYPE_MISMATCH(toDouble(L"nan"));
}

TEST(ConversionsTest, TooSmallANumberIsZero) { EXPECT_EQ(toDouble(L"1e-400"), 0.0); }

TEST(ConversionsTest, TruthWordsAndNumbersAreBooleans) {
  for (const wchar_t* text : {L"True", L"TRUE", L"true", L" True ", L"1", L"-1", L"0.1"}) {
    EXPECT_TRUE(toBoolean(text)) << text;
  }
  for (const wchar_t* text : {L"False", L"FALSE", L"0", L"0.0", L" 0 "}) {
    EXPECT_FALSE(toBoolean(text)) << text;
  }
}

TEST(ConversionsTest, OtherWordsAreNoBooleans) {
  EXPECT_TYPE_MISMATCH(toBoolean(L""));
  EXPECT_TYPE_MISMATCH(toBoolean(L"yes"));
  EXPECT_TYPE_MISMATCH(toBoolean(L"Truth"));
}

}  // namespace
}  // namespace tlpacscfg
