#pragma once

// The one way to the Windows headers: COM and OLE automation, without the macros min and max.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

// MinGW attaches an interface's id for __uuidof with this macro; other compilers take it from the
// interface's declaration and have nothing to do here.
#ifndef __CRT_UUID_DECL
#define __CRT_UUID_DECL(type, l, w1, w2, b1, b2, b3, b4, b5, b6, b7, b8)
#endif
