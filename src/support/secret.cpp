#include "support/secret.h"

namespace tlpacscfg {

void wipe(std::wstring& text) {
  // The buffer may hold the rest of a longer text beyond the end.
  text.resize(text.capacity());
  wipeMemory(text.data(), text.size() * sizeof(wchar_t));
  text.clear();
}

}  // namespace tlpacscfg
