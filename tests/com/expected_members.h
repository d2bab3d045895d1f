#pragma once

#include <span>
#include <string>
#include <vector>

namespace tlpacscfg::test {

/// What a class offers, written down once more by hand.
struct ExpectedMember {
  const wchar_t* name;
  /// G, P and R for get, put and putref; M for a method.
  const wchar_t* kinds;
  /// Of a method.
  std::vector<std::wstring> parameters = {};
  /// What hosts may write without the member's name.
  bool isDefault = false;
};

struct ExpectedClass {
  const wchar_t* name;
  const wchar_t* classId;
  const wchar_t* interfaceId;
  std::vector<ExpectedMember> members;
};

inline constexpr const wchar_t* kLibraryId = L"{DE163707-C025-4076-B9B0-9A4FED69C66F}";

std::span<const ExpectedClass> expectedClasses();
const ExpectedClass& expectedClass(const std::wstring& name);

}  // namespace tlpacscfg::test
