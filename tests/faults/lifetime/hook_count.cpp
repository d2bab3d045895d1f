#include "faults/lifetime/hook_count.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <string_view>

namespace tlpacscfg::test {
namespace {

std::atomic<int> g_set = 0;
std::atomic<int> g_removed = 0;

HHOOK WINAPI countSetting(int kind, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
  const HHOOK hook = SetWindowsHookExW(kind, procedure, module, thread);
  if (hook) ++g_set;
  return hook;
}

BOOL WINAPI countRemoval(HHOOK hook) {
  const BOOL removed = UnhookWindowsHookEx(hook);
  if (removed) ++g_removed;
  return removed;
}

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
  return nullptr;
}

template <class Function>
void redirect(HMODULE module, const char* name, Function* function) {
  ULONG_PTR* const address = importOf(module, name);
  ASSERT_NE(address, nullptr) << name;
  DWORD protection = 0;
  ASSERT_TRUE(VirtualProtect(address, sizeof(*address), PAGE_READWRITE, &protection));
  *address = reinterpret_cast<ULONG_PTR>(function);
  VirtualProtect(address, sizeof(*address), protection, &protection);
}

}  // namespace

HookCount::HookCount(HMODULE module) : module_(module) {
  redirect(module_, "SetWindowsHookExW", &countSetting);
  redirect(module_, "UnhookWindowsHookEx", &countRemoval);
}

HookCount::~HookCount() {
  redirect(module_, "SetWindowsHookExW", &SetWindowsHookExW);
  redirect(module_, "UnhookWindowsHookEx", &UnhookWindowsHookEx);
}

int HookCount::now() { return g_set - g_removed; }
int HookCount::ever() { return g_set; }

}  // namespace tlpacscfg::test
