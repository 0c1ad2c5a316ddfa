#pragma once

#include <atomic>

#include "platform/win32.h"

namespace pagevalidatefilter
{
/// What keeps the module loaded: its live filters and class factories, and each factory that is locked.
inline std::atomic<ULONG> g_moduleCount{0};

/// Counts its owner for as long as it lives.
class ModuleReference
{
public:
    ModuleReference() noexcept { ++g_moduleCount; }
    ModuleReference(const ModuleReference&) = delete;
    ModuleReference& operator=(const ModuleReference&) = delete;
    ~ModuleReference() { --g_moduleCount; }
};
} // namespace pagevalidatefilter
