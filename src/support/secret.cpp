#include "support/secret.h"

namespace tlpacscfg {

void wipe(std::wstring& text) {
  // A text that was longer before has its rest beyond the end.
  text.resize(text.capacity());
  wipeMemory(text.data(), text.size() * sizeof(wchar_t));
  text.clear();
}

}  // namespace tlpacscfg
