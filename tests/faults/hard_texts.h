#pragma once

#include <string>
#include <vector>

namespace tlpacscfg::test {

/// A text that somewhere between a record and a database might suffer.
struct HardText {
  const char* name;
  std::wstring text;
};

const std::vector<HardText>& hardTexts();

}  // namespace tlpacscfg::test
