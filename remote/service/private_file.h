#pragma once

#include <sys/stat.h>

#include <string>

namespace tlpacscfg::service {

/// Why a file of this kind, mode and owner is not private for a service that runs as `user`; empty
/// when it is.
std::string whyNotPrivate(const struct stat& status, uid_t user);

/// The content of a file that holds secrets. Throws OptionError, which begins with `kind` ("the
/// key") and names the file: when it cannot be read, and when it is not private: it belongs to root
/// or the user of the service, nobody else can change it, and only its group may read it.
std::string readPrivateFile(const std::string& kind, const std::string& file);

}  // namespace tlpacscfg::service
