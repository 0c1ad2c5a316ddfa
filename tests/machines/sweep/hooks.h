#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/win32.h"

// Intercepts the calls of a module. Function pointers in its import table, and in the method tables of the
// objects that it receives, are replaced by pointers to thunks, which call Before and After of a
// FunctionHook.
namespace sweep
{
/// A call in progress.
struct Call
{
    /// The integer arguments, of which twelve can be read.
    const std::uintptr_t* arguments;
    const void* returnAddress;
    std::uintptr_t result;

    template <typename T>
    T Argument(std::size_t index) const
    {
        return reinterpret_cast<T>(arguments[index]); // NOLINT(performance-no-int-to-ptr)
    }
};

/// Replaces one function. Lives as long as the program.
class Hook
{
public:
    Hook(const Hook&) = delete;
    Hook& operator=(const Hook&) = delete;

    /// The pointer that replaces the original function's.
    void* Entry() const { return m_entry; }

    /// Called before the original. If it returns true the original is not called, and the call's result is
    /// used.
    virtual bool Before(Call& call) = 0;
    /// Called after the original; may change the result.
    virtual void After(Call& call) = 0;

    /// The thunk calls the original through this member, by its offset.
    void* original;

protected:
    explicit Hook(void* replaced);
    ~Hook() = default;

private:
    void* const m_entry;
};

/// Writes a pointer into memory that may be read-only.
void Overwrite(void** place, void* value);
} // namespace sweep
