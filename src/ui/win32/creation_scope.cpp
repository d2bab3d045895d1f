#include "ui/win32/creation_scope.h"

namespace tlpacscfg::win32 {
namespace {

/// Windows 10 has these functions since its release 1607.
struct Awareness {
  decltype(&SetThreadDpiAwarenessContext) setOfThread;
  decltype(&GetThreadDpiAwarenessContext) ofThread;
  decltype(&GetAwarenessFromDpiAwarenessContext) kindOf;

  Awareness() {
    const HMODULE user = GetModuleHandleW(L"user32.dll");
    find(user, "SetThreadDpiAwarenessContext", setOfThread);
    find(user, "GetThreadDpiAwarenessContext", ofThread);
    find(user, "GetAwarenessFromDpiAwarenessContext", kindOf);
  }

  bool exists() const { return setOfThread && ofThread && kindOf; }

 private:
  template <class Function>
  static void find(HMODULE module, const char* name, Function& function) {
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
  }
};

/// The host's awareness if it was replaced, otherwise null.
DPI_AWARENESS_CONTEXT leavePerMonitorAwareness() {
  const Awareness awareness;
  if (!awareness.exists()) return nullptr;
  if (awareness.kindOf(awareness.ofThread()) != DPI_AWARENESS_PER_MONITOR_AWARE) return nullptr;
  return awareness.setOfThread(DPI_AWARENESS_CONTEXT_SYSTEM_AWARE);
}

}  // namespace

CreationScope::CreationScope() : hostAwareness_(leavePerMonitorAwareness()) {
  if (GetProcessDefaultLayout(&hostLayout_) && hostLayout_ != 0) SetProcessDefaultLayout(0);
}

CreationScope::~CreationScope() {
  if (hostLayout_ != 0) SetProcessDefaultLayout(hostLayout_);
  if (hostAwareness_) Awareness().setOfThread(hostAwareness_);
}

}  // namespace tlpacscfg::win32
