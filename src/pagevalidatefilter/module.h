#pragma once

#include "platform/win32.h"

namespace pagevalidatefilter
{
/// The one class of the module, as the pipeline's configuration names it.
inline constexpr CLSID kPageValidateXpsFilter = {
    0xD79DCE9B, 0x5F31, 0x4A6C, {0xA1, 0x60, 0xA3, 0x4B, 0x2A, 0x81, 0x2B, 0xF8}};
} // namespace pagevalidatefilter
