#pragma once

namespace tlpacscfg::test {

inline constexpr const wchar_t* kSaveQuestion =
    L"Configuration has not been saved. Would you like to save the current configuration before "
    L"continuing?";
inline constexpr const wchar_t* kNewQuestion =
    L"You have not saved the new configuration. Would you like to save the configuration before "
    L"continuing?";

}  // namespace tlpacscfg::test
