#include "service/credentials.h"

namespace tlpacscfg::service {

Credentials::Credentials(const ServiceOptions& options)
    : tls(options.plainHttp ? nullptr : makeTlsContext(options.certificate, options.key)),
      tokens(options.tokens) {}

}  // namespace tlpacscfg::service
