#include "ui/win32/module.h"

#include "support/handle_win.h"
#include "support/module_win.h"
#include "ui/win32/gdi.h"

namespace tlpacscfg::win32 {
namespace {

/// The resource id of a DLL's manifest.
constexpr WORD kManifestId = 2;

using ActivationContext = UniqueHandle<HANDLE, &ReleaseActCtx, kInvalidHandle>;

ActivationContext createActivationContext() {
  ACTCTXW request{};
  request.cbSize = sizeof(request);
  request.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_HMODULE_VALID;
  request.hModule = moduleInstance();
  request.lpResourceName = MAKEINTRESOURCEW(kManifestId);
  return ActivationContext(CreateActCtxW(&request));
}

}  // namespace

ThemeScope::ThemeScope() {
  static const ActivationContext context = createActivationContext();
  active_ = context && ActivateActCtx(context.get(), &cookie_);
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
