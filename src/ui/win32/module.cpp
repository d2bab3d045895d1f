#include "ui/win32/module.h"

#include "ui/win32/gdi.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace tlpacscfg::win32 {
namespace {

/// The resource id of a DLL's manifest.
constexpr WORD kManifestId = 2;

class ActivationContext {
 public:
  ActivationContext() {
    ACTCTXW request{};
    request.cbSize = sizeof(request);
    request.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_HMODULE_VALID;
    request.hModule = moduleInstance();
    request.lpResourceName = MAKEINTRESOURCEW(kManifestId);
    handle_ = CreateActCtxW(&request);
  }
  ~ActivationContext() {
    if (valid()) ReleaseActCtx(handle_);
  }
  ActivationContext(const ActivationContext&) = delete;
  ActivationContext& operator=(const ActivationContext&) = delete;

  bool valid() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE handle() const { return handle_; }

 private:
  HANDLE handle_ = INVALID_HANDLE_VALUE;
};

const ActivationContext& activationContext() {
  static const ActivationContext context;
  return context;
}

}  // namespace

HINSTANCE moduleInstance() { return reinterpret_cast<HINSTANCE>(&__ImageBase); }

ThemeScope::ThemeScope() {
  const ActivationContext& context = activationContext();
  active_ = context.valid() && ActivateActCtx(context.handle(), &cookie_);
}

ThemeScope::~ThemeScope() {
  if (active_) DeactivateActCtx(0, cookie_);
}

int pixelsFromTwips(int twips) {
  constexpr int kTwipsInInch = 1440;
  const ScreenDc screen;
  return MulDiv(twips, GetDeviceCaps(screen.get(), LOGPIXELSX), kTwipsInInch);
}

}  // namespace tlpacscfg::win32
