#include "support/runtime_error.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

namespace tlpacscfg {
namespace {

RunTimeError described(const std::function<void()>& failing) {
  try {
    failing();
  } catch (...) {
    return describeCurrent();
  }
  return RunTimeError(0, L"nothing was thrown");
}

TEST(RuntimeError, AnErrorOfTheComponentKeepsItsNumberAndDescription) {
  const RunTimeError error = described([] { throw RunTimeError(457, L"known key"); });
  EXPECT_EQ(error.number(), 457);
  EXPECT_EQ(error.description(), L"known key");
}

TEST(RuntimeError, AnErrorOfTheLibraryIsErrorFiveWithItsOwnText) {
  const RunTimeError error = described([] { throw std::runtime_error("out of luck"); });
  EXPECT_EQ(error.number(), 5);
  EXPECT_EQ(error.description(), L"out of luck");
}

TEST(RuntimeError, WhatIsNoExceptionClassIsErrorFiveToo) {
  const RunTimeError error = described([] { throw 42; });
  EXPECT_EQ(error.number(), 5);
  EXPECT_EQ(error.description(), L"Invalid procedure call or argument");
}

}  // namespace
}  // namespace tlpacscfg
