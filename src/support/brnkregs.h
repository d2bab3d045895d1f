#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "support/registry.h"

namespace tlpacscfg {

/// A registry key of an application under HKEY_LOCAL_MACHINE, for hosts. The key's path is the base
/// path followed directly by the application name.
class brnkregs {
 public:
  static constexpr std::int16_t kText = 1;
  static constexpr std::int16_t kNumber = 4;

  /// Creates the key when it is missing. A type other than kText and kNumber writes nothing and
  /// succeeds; so does SetAppRegValue, which needs the key to exist.
  bool CreateRegEntry(std::int16_t pDatatype, const std::wstring& KeyToAdd,
                      const registry::Value& ValueToAdd);
  bool SetAppRegValue(const std::wstring& WhatKey, std::int16_t KeyDataType,
                      const registry::Value& NewKeyValue);

  /// Deletes the key itself; false when it is missing or has subkeys.
  bool DeleteAllAppRegEntries();

  /// Text includes its terminating zero; a type other than text and number gives the number 1.
  /// nullopt when the value is missing or a text is longer than 255 characters.
  std::optional<registry::Value> GetAppRegValue(const std::wstring& WhatKey,
                                                std::int16_t KeyDataType) const;

  /// The text without its terminating zero; a missing value is created with the default, unless
  /// that is empty.
  std::wstring GetRegValue(const std::wstring& strKey, const std::wstring& strDefaultString);

  void setAppRegPath(const std::wstring& strRegKeyPath) { basePath_ = strRegKeyPath; }
  void setAppName(const std::wstring& strAppPath) { appName_ = strAppPath; }
  const std::wstring& appName() const { return appName_; }
  /// Returns the application name, not the path: hosts rely on it.
  const std::wstring& appRegPath() const { return appName_; }

 private:
  std::wstring fullPath() const { return basePath_ + appName_; }

  std::wstring basePath_;
  std::wstring appName_;
};

}  // namespace tlpacscfg
