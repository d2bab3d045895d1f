#include "service/refusal.h"

#include <new>

#include "odbc/fetch.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg::service {

Refusal refusalOfCurrentException() {
  try {
    throw;
  } catch (const Refusal& refusal) {
    return refusal;
  } catch (const RunTimeError& error) {
    return {http_status::kFailed, toUtf8(error.description())};
  } catch (const odbc::ResultTooLarge&) {
    return tooLarge();
  } catch (const std::bad_alloc&) {
    return {http_status::kFailed, "The result is larger than the service can hold."};
  } catch (...) {
    return {http_status::kFailed, "The service could not do that."};
  }
}

}  // namespace tlpacscfg::service
