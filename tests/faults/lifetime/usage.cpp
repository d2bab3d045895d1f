#include "faults/lifetime/usage.h"

#include <windows.h>
#include <psapi.h>

#include <cstdint>
#include <ostream>
#include <vector>

namespace tlpacscfg::test {
namespace {

/// Wine does not count handles and objects. There every possible handle is tested.
constexpr std::uintptr_t kLastKernelHandle = 0x8000;
constexpr std::uintptr_t kLastUserHandle = 0xFFFF;

template <class Handle>
Handle handleOf(std::uintptr_t number) {
  return reinterpret_cast<Handle>(number);
}

int kernelHandles() {
  DWORD counted = 0;
  if (GetProcessHandleCount(GetCurrentProcess(), &counted) && counted > 0) {
    return static_cast<int>(counted);
  }
  int count = 0;
  for (std::uintptr_t i = 4; i <= kLastKernelHandle; i += 4) {
    DWORD flags = 0;
    if (GetHandleInformation(handleOf<HANDLE>(i), &flags)) ++count;
  }
  return count;
}

int gdiObjects() {
  if (const DWORD counted = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS)) {
    return static_cast<int>(counted);
  }
  int count = 0;
  for (std::uintptr_t i = 1; i <= kLastUserHandle; ++i) {
    if (GetObjectType(handleOf<HGDIOBJ>(i)) != 0) ++count;
  }
  return count;
}

bool isIcon(HICON icon) {
  ICONINFO info{};
  if (!GetIconInfo(icon, &info)) return false;
  if (info.hbmColor) DeleteObject(info.hbmColor);
  if (info.hbmMask) DeleteObject(info.hbmMask);
  return true;
}

int menusAndIcons() {
  int count = 0;
  for (std::uintptr_t i = 0x20; i <= kLastUserHandle; ++i) {
    if (IsMenu(handleOf<HMENU>(i)) || isIcon(handleOf<HICON>(i))) ++count;
  }
  return count;
}

BOOL CALLBACK countOwn(HWND window, LPARAM count) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process == GetCurrentProcessId()) ++*reinterpret_cast<int*>(count);
  return TRUE;
}

BOOL CALLBACK countOwnWithChildren(HWND window, LPARAM count) {
  countOwn(window, count);
  return EnumChildWindows(window, &countOwn, count), TRUE;
}

int windows() {
  int count = 0;
  EnumWindows(&countOwnWithChildren, reinterpret_cast<LPARAM>(&count));
  HWND window = nullptr;
  while ((window = FindWindowExW(HWND_MESSAGE, window, nullptr, nullptr)) != nullptr) {
    countOwn(window, reinterpret_cast<LPARAM>(&count));
  }
  return count;
}

void addHeaps(Usage& usage) {
  std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
  heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
  for (const HANDLE heap : heaps) {
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(heap);
    while (HeapWalk(heap, &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) == 0) continue;
      ++usage.heapBlocks;
      usage.heapBytes += entry.cbData;
    }
    HeapUnlock(heap);
  }
}

}  // namespace

Usage usageNow() {
  Usage usage;
  usage.kernelHandles = kernelHandles();
  usage.gdiObjects = gdiObjects();
  usage.windows = windows();
  usage.menusAndIcons = menusAndIcons();
  addHeaps(usage);
  PROCESS_MEMORY_COUNTERS memory{};
  GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof(memory));
  usage.committedBytes = memory.PagefileUsage;
  usage.workingSet = memory.WorkingSetSize;
  return usage;
}

std::ostream& operator<<(std::ostream& stream, const Usage& usage) {
  return stream << usage.kernelHandles << " handles, " << usage.gdiObjects << " GDI objects, "
                << usage.windows << " windows, " << usage.menusAndIcons << " menus and icons, "
                << usage.heapBlocks << " blocks of " << usage.heapBytes << " bytes, "
                << usage.committedBytes / 1024 << " KB committed, " << usage.workingSet / 1024
                << " KB in memory";
}

}  // namespace tlpacscfg::test
