#pragma once

#include <string>

#include "platform/win32.h"

// HRESULTs as they are shown to people.
namespace host
{
/// "0x80070490".
std::string FormatResult(HRESULT result);

/// "Element not found.", without a line end; empty for S_OK.
std::string DescribeResult(HRESULT result);
} // namespace host
