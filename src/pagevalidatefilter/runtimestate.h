#pragma once

namespace pagevalidatefilter
{
#ifdef __MINGW32__
/// Prepares what the C++ runtime keeps for each thread that handles an exception. Called when the module is
/// loaded; false when the process has no slot left for it.
[[nodiscard]] bool AttachRuntime() noexcept;

/// Gives back what the runtime keeps for the module, on whichever thread it was made. Called when the module
/// is unloaded from a process that goes on.
void DetachRuntime() noexcept;
#else
// Other runtimes give it back by themselves.
[[nodiscard]] inline bool AttachRuntime() noexcept
{
    return true;
}
inline void DetachRuntime() noexcept {}
#endif
} // namespace pagevalidatefilter
