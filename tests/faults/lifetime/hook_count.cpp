#include "faults/lifetime/hook_count.h"

#include <atomic>

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

}  // namespace

HookCount::HookCount(HMODULE module)
    : setting_(module, "SetWindowsHookExW", &countSetting),
      removal_(module, "UnhookWindowsHookEx", &countRemoval) {}

int HookCount::now() { return g_set - g_removed; }
int HookCount::ever() { return g_set; }

}  // namespace tlpacscfg::test
