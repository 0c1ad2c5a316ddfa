#include "machines/sweep/hooks.h"

#include <cstring>

// SweepThunk is in thunk.S and calls the other two.
extern "C"
{
    void SweepThunk();

    int SweepBefore(sweep::Hook* hook,
                    const std::uintptr_t* arguments,
                    const void* returnAddress,
                    std::uintptr_t* result)
    {
        sweep::Call call{arguments, returnAddress, 0};
        const bool isAnswered = hook->Before(call);
        *result = call.result;
        return isAnswered ? 1 : 0;
    }

    void SweepAfter(sweep::Hook* hook,
                    const std::uintptr_t* arguments,
                    const void* returnAddress,
                    std::uintptr_t* result)
    {
        // Kept for a caller that asks why the original failed.
        const DWORD error = GetLastError();
        sweep::Call call{arguments, returnAddress, *result};
        hook->After(call);
        *result = call.result;
        SetLastError(error);
    }
}

namespace sweep
{
namespace
{
/// mov r11, hook; mov rax, SweepThunk; jmp rax
void* MakeEntry(const Hook* hook)
{
    constexpr std::size_t kRoom = 1U << 20U;
    constexpr std::size_t kEntrySize = 32;
    static auto* const room = static_cast<std::uint8_t*>(
        VirtualAlloc(nullptr, kRoom, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
    static std::size_t used = 0;
    std::uint8_t* const entry = room + used;
    used += kEntrySize;
    const auto thunk = reinterpret_cast<std::uintptr_t>(&SweepThunk);
    // NOLINTBEGIN(bugprone-not-null-terminated-result,bugprone-sizeof-expression): instructions and
    // addresses.
    std::memcpy(entry, "\x49\xBB", 2);
    std::memcpy(entry + 2, &hook, sizeof(hook));
    std::memcpy(entry + 10, "\x48\xB8", 2);
    std::memcpy(entry + 12, &thunk, sizeof(thunk));
    std::memcpy(entry + 20, "\xFF\xE0", 2);
    // NOLINTEND(bugprone-not-null-terminated-result,bugprone-sizeof-expression)
    return entry;
}
} // namespace

Hook::Hook(void* replaced) : original(replaced), m_entry(MakeEntry(this)) {}

void Overwrite(void** place, void* value)
{
    DWORD protection = 0;
    VirtualProtect(place, sizeof(value), PAGE_READWRITE, &protection);
    *place = value;
    VirtualProtect(place, sizeof(value), protection, &protection);
}
} // namespace sweep
