#pragma once

#include <string>

#include "platform/win32.h"

// HRESULTs as they are shown to people.
namespace host::pipeline
{
/// "0x80070490".
std::string FormatResult(HRESULT result);

/// What an HRESULT says, on one line: of the print ticket calls' own codes their names, of others the
/// system's text. Empty for S_OK.
std::string DescribeResult(HRESULT result);
} // namespace host::pipeline
