#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

#include "harness/redirected_import.h"

namespace tlpacscfg::test {
namespace {

/// The entry of the module's import table for the function.
ULONG_PTR* importOf(HMODULE module, std::string_view name) {
  auto* const base = reinterpret_cast<std::byte*>(module);
  const auto at = [base](DWORD offset) { return base + offset; };
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* headers =
      reinterpret_cast<const IMAGE_NT_HEADERS*>(at(static_cast<DWORD>(dos->e_lfanew)));
  const IMAGE_DATA_DIRECTORY& imports =
      headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto* library =
      reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(at(imports.VirtualAddress));
  for (; library->Name != 0; ++library) {
    const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(at(library->OriginalFirstThunk));
    auto* addresses = reinterpret_cast<IMAGE_THUNK_DATA*>(at(library->FirstThunk));
    for (; names->u1.AddressOfData != 0; ++names, ++addresses) {
      if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
      const auto* import = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(
          at(static_cast<DWORD>(names->u1.AddressOfData)));
      if (name == reinterpret_cast<const char*>(import->Name)) {
        return reinterpret_cast<ULONG_PTR*>(&addresses->u1.Function);
      }
    }
  }
  throw std::runtime_error(std::string(name) + " is not imported.");
}

}  // namespace

RedirectedImport::RedirectedImport(HMODULE module, const char* name, ULONG_PTR function)
    : entry_(importOf(module, name)), original_(*entry_) {
  write(function);
}

void RedirectedImport::write(ULONG_PTR function) const {
  DWORD protection = 0;
  VirtualProtect(entry_, sizeof(*entry_), PAGE_READWRITE, &protection);
  *entry_ = function;
  VirtualProtect(entry_, sizeof(*entry_), protection, &protection);
}

}  // namespace tlpacscfg::test
