#include "data/tl_comm_client.h"
#include "support/runtime_error.h"

namespace tlpacscfg {

// COM objects exist on Windows only.
std::function<std::unique_ptr<TlCommClientObject>()> createTlCommClient =
    []() -> std::unique_ptr<TlCommClientObject> { raise(ErrorNumber::CannotCreateObject); };

}  // namespace tlpacscfg
