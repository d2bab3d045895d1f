#pragma once

#include <set>
#include <string>
#include <vector>

#include "cli/base/option.h"
#include "shared/limits.h"

namespace tlpacscfg::cli {

/// How the site's data are reached, and who says so.
struct ConnectionOptions {
  std::string server;
  std::string database;
  std::string user;
  std::string dataSource;
  std::string sqliteFile;
  std::string offlineFile;
  std::string service;
  std::string fingerprint;
  bool plainHttp = false;
  int requestBytes = remote::kRequestBytes;

  std::string site;
  std::string settingsFile;

  std::string passwordFile;
  bool passwordFromInput = false;

  std::string iniFile;
  std::string rootDirectory;
  int timeout = 15;
  int userId = 0;
  /// The directory for the record of changes; empty for the user's own.
  std::string journal;

  /// The options that have their values: "--timeout". The settings of the site set the others.
  std::set<std::string> given;
};

/// The lines of the option table that fill it.
std::vector<Option> optionsOf(ConnectionOptions& options);

}  // namespace tlpacscfg::cli
