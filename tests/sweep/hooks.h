#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/win32.h"

// Ways into the calls that a module makes to the outside: pointers to functions, in its table of imports and
// in the tables of the objects that it is given, are replaced by ones that ask first and tell afterwards.
namespace sweep
{
/// One call while it happens.
struct Call
{
    /// The integer arguments; twelve can be looked at.
    const std::uintptr_t* arguments;
    const void* returnAddress;
    std::uintptr_t result;

    template <typename T>
    T Argument(std::size_t index) const
    {
        return reinterpret_cast<T>(arguments[index]); // NOLINT(performance-no-int-to-ptr)
    }
};

/// What stands in for one function of the outside. Lives as long as the program.
class Hook
{
public:
    Hook(const Hook&) = delete;
    Hook& operator=(const Hook&) = delete;

    /// The pointer to put in the place of the original's.
    void* Entry() const { return m_entry; }

    /// Answers in place of the original when it gives true; the call's result is then the answer.
    virtual bool Before(Call& call) = 0;
    /// After the original; may change the result.
    virtual void After(Call& call) = 0;

    /// The original is called through this member, by its place in the object.
    void* const original;

protected:
    explicit Hook(void* replaced);
    ~Hook() = default;

private:
    void* const m_entry;
};

/// Puts a pointer where the memory may be read-only.
void Overwrite(void** place, void* value);
} // namespace sweep
