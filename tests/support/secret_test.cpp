#include "support/secret.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>

namespace tlpacscfg {
namespace {

/// The memory of a text up to its former length. The text must still own that memory.
bool holdsOnlyZeros(const wchar_t* memory, std::size_t count) {
  return std::all_of(memory, memory + count, [](wchar_t unit) { return unit == L'\0'; });
}

TEST(Secret, OnlyTheGivenMemoryIsZeroed) {
  std::array<unsigned char, 8> bytes{1, 2, 3, 4, 5, 6, 7, 8};
  wipeMemory(bytes.data() + 2, 4);
  EXPECT_EQ(bytes, (std::array<unsigned char, 8>{1, 2, 0, 0, 0, 0, 7, 8}));
}

TEST(Secret, AZeroLengthWipesNothing) {
  unsigned char byte = 1;
  wipeMemory(&byte, 0);
  EXPECT_EQ(byte, 1);
}

TEST(Secret, ATextIsEmptyAndItsMemoryZeroAfterwards) {
  for (const std::size_t length : {0U, 1U, 3U, 40U, 5000U}) {
    std::wstring text(length, L'x');
    const wchar_t* const memory = text.data();
    wipe(text);
    EXPECT_TRUE(text.empty());
    ASSERT_EQ(text.data(), memory) << "a text of " << length << " moved";
    EXPECT_TRUE(holdsOnlyZeros(memory, length)) << length;
  }
}

TEST(Secret, TheUnusedRestOfALongerTextIsZeroedToo) {
  std::wstring text(100, L'x');
  const wchar_t* const memory = text.data();
  text.resize(10);
  wipe(text);
  ASSERT_EQ(text.data(), memory);
  EXPECT_TRUE(holdsOnlyZeros(memory, 100));
}

TEST(Secret, ATextCanBeUsedAgainAfterwards) {
  std::wstring text = L"secret";
  wipe(text);
  text = L"other";
  EXPECT_EQ(text, L"other");
}

}  // namespace
}  // namespace tlpacscfg
