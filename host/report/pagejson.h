#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

#include "host/report/pagereport.h"

namespace host::report
{
using Json = nlohmann::ordered_json;

/// An object on a line of its own. Bytes that are no UTF-8 become U+FFFD.
std::string ToJsonLine(const Json& object);

/// Null for an empty text.
Json TextOrNull(const std::string& text);

/// A page on one line. Page sizes are in 1/96 inch, sheets in micrometres.
std::string FormatJson(const PageReport& page);

/// A page in a second run.
std::string FormatSecondRunJson(const PageReport& page);
} // namespace host::report
