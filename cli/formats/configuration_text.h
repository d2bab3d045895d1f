#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "config/pacs_configuration.h"

/// A configuration as a text for people, editors and version control: one field a line, in the
/// order of the table, "FIELD = VALUE". Options are in words. A text stands as it is; one that
/// would be misread (outer blanks, control characters, a quote at its begin) is a JSON string.
/// Lines that begin with # are comments.
namespace tlpacscfg::cli {

/// Loses nothing: reading it gives an equal record.
std::string textOf(const clsPACSConfiguration& record);

struct TextError {
  std::size_t line;  ///< Counts from 1; 0 for the text as a whole.
  std::string message;
};

struct ConfigurationText {
  clsPACSConfiguration record;
  std::vector<TextError> errors;  ///< All of them; the record is to be used when there are none.
};

/// Every field must be there once; only the last change may be left out.
ConfigurationText readConfigurationText(std::string_view text);

}  // namespace tlpacscfg::cli
