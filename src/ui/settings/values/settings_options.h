#pragma once

#include <cstdint>
#include <span>

#include "ui/settings/values/settings_controls.h"

namespace tlpacscfg {

struct Option {
  const wchar_t* text;
  std::int16_t code;
};

/// The entries of a list in their order; none for a control that is no list, and for the list of
/// XML files, whose entries are found when the window opens. Where the stored value is a position,
/// the code is that position.
std::span<const Option> optionsOf(Control control);

/// The names that the accession fields are ticked and stored by.
std::span<const Option> dictationFields();
inline constexpr std::size_t kDictationFieldCount = 20;

/// Vendor formats that rules and checks know by their code.
namespace vendor {
inline constexpr std::int16_t kGe = 2;
inline constexpr std::int16_t kBroker = 4;
inline constexpr std::int16_t kBrokerExtended = 5;
inline constexpr std::int16_t kCustom = 7;
inline constexpr std::int16_t kTcpIp = 8;
inline constexpr std::int16_t kHmi = 9;
}  // namespace vendor

/// Positions of the response type list.
namespace response {
inline constexpr int kXmlFile = 0;
inline constexpr int kUrl = 1;
inline constexpr int kHl7 = 2;
}  // namespace response

}  // namespace tlpacscfg
