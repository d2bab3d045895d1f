#pragma once

#include <gtest/gtest.h>

#include "support/runtime_error.h"

/// The statement throws a run-time error of this number and description.
#define EXPECT_RUNTIME_ERROR(statement, expectedNumber, expectedDescription) \
  try {                                                                      \
    static_cast<void>(statement);                                            \
    ADD_FAILURE() << "Nothing was thrown by " #statement;                    \
  } catch (const tlpacscfg::RunTimeError& thrown) {                          \
    EXPECT_EQ(thrown.number(), expectedNumber);                              \
    EXPECT_EQ(thrown.description(), std::wstring(expectedDescription));      \
  }

#define EXPECT_OVERFLOW(statement) EXPECT_RUNTIME_ERROR(statement, 6, L"Overflow")
#define EXPECT_TYPE_MISMATCH(statement) EXPECT_RUNTIME_ERROR(statement, 13, L"Type mismatch")
