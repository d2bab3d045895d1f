#include "automation/registration_entries.h"

namespace tlpacscfg {

std::wstring classKey(const RegisteredClass& type) { return L"CLSID\\" + type.id; }

std::wstring versionedProgId(const RegisteredClass& type) { return type.progId + L".1"; }

std::vector<RegistryEntry> nameEntries(const RegisteredClass& type) {
  std::vector<RegistryEntry> entries = {
      {type.progId, L"", type.progId},
      {type.progId + L"\\CLSID", L"", type.id},
  };
  if (!type.typeLibrary.empty()) {
    const std::wstring versioned = versionedProgId(type);
    entries.insert(entries.end(), {{type.progId + L"\\CurVer", L"", versioned},
                                   {versioned, L"", type.progId},
                                   {versioned + L"\\CLSID", L"", type.id}});
  }
  return entries;
}

std::vector<RegistryEntry> serverEntries(const RegisteredClass& type,
                                         const std::wstring& modulePath) {
  const std::wstring key = classKey(type);
  const bool hasLibrary = !type.typeLibrary.empty();
  std::vector<RegistryEntry> entries = {
      {key, L"", type.progId},
      {key + L"\\InprocServer32", L"", modulePath},
      {key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {key + L"\\ProgID", L"", hasLibrary ? versionedProgId(type) : type.progId},
  };
  if (hasLibrary) {
    const std::wstring version =
        std::to_wstring(kTypeLibraryMajor) + L"." + std::to_wstring(kTypeLibraryMinor);
    entries.insert(entries.end(), {{key + L"\\VersionIndependentProgID", L"", type.progId},
                                   {key + L"\\TypeLib", L"", type.typeLibrary},
                                   {key + L"\\Version", L"", version},
                                   {key + L"\\Programmable", L"", L""}});
  }
  return entries;
}

}  // namespace tlpacscfg
