#pragma once

#include "platform/win32.h"

// The flat functions of GDI+ and what they need. The C++ classes around them stay out of use: they
// hide the status of construction.
#include <objidl.h>
#include <propidl.h>

#include <algorithm>

namespace Gdiplus
{
// The header of GDI+ expects the macros that win32.h leaves out.
using std::max;
using std::min;
} // namespace Gdiplus

#include <gdiplus.h>
