#pragma once

#include <string>

#include "platform/win32.h"

// HRESULTs as they are shown to people.
namespace host::pipeline
{
/// "0x80070490".
std::string FormatResult(HRESULT result);

/// "E_ACCESSDENIED"; the code of one without a known name.
std::string NameResult(HRESULT result);

/// The meaning of an HRESULT on one line: the names of the print ticket calls' own codes, otherwise the
/// system's text. Empty for S_OK.
std::string DescribeResult(HRESULT result);
} // namespace host::pipeline
