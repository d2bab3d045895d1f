#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "config/columns.h"
#include "config/pacs_configuration.h"

/// The fields of a configuration as people write them: by name, and options in words.
namespace tlpacscfg::cli {

/// The column of this property, whatever its letter case; also found by its name in the table and
/// by its caption in the window. Throws Failure, which suggests the right name.
const Column& columnNamed(std::string_view name);

/// The option's text, "yes" or "no", or the value itself where it has no words.
std::string wordsOf(const Column& column, const FieldValue& value);
std::string wordsOf(const Column& column, const clsPACSConfiguration& record);

/// False for a code that is not among the options of its column.
bool isKnownOption(const Column& column, const clsPACSConfiguration& record);

/// The value of words or of a code; the opposite of wordsOf. Throws Failure.
FieldValue valueIn(const Column& column, const std::string& text);

/// The summary that the component prints. Names of accession fields, which it cannot print, are
/// shown as if their codes were stored; what is no name is left out.
std::string summaryOf(const clsPACSConfiguration& record);

}  // namespace tlpacscfg::cli
