#pragma once

#include <atomic>

#include "platform/win32.h"

namespace pagevalidatefilter
{
/// The module's only class, under the id in the pipeline's configuration.
inline constexpr CLSID kPageValidateXpsFilter = {
    0xD79DCE9B, 0x5F31, 0x4A6C, {0xA1, 0x60, 0xA3, 0x4B, 0x2A, 0x81, 0x2B, 0xF8}};

/// Keeps the module loaded while it is not 0: the number of live filters and class factories, and of locked
/// factories.
inline std::atomic<ULONG> g_moduleCount{0};

/// Counts its owner while it lives.
class ModuleReference
{
public:
    ModuleReference() noexcept { ++g_moduleCount; }
    ModuleReference(const ModuleReference&) = delete;
    ModuleReference& operator=(const ModuleReference&) = delete;
    ~ModuleReference() { --g_moduleCount; }
};
} // namespace pagevalidatefilter
