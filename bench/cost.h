#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

#include "platform/win32.h"

#include <psapi.h>

namespace bench
{
/// What something took of the calling thread.
struct Cost
{
    std::chrono::duration<double> processor{};
    std::chrono::duration<double> wall{};
};

/// Measures from its construction on. Wine counts a thread's processor time in steps of 10 ms.
class Stopwatch
{
public:
    Cost Read() const
    {
        return {ProcessorTime() - m_processorStart, std::chrono::steady_clock::now() - m_wallStart};
    }

private:
    // A FILETIME counts in this unit.
    using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;

    static Ticks ProcessorTime()
    {
        FILETIME created;
        FILETIME ended;
        FILETIME kernel;
        FILETIME user;
        GetThreadTimes(GetCurrentThread(), &created, &ended, &kernel, &user);
        return ToTicks(kernel) + ToTicks(user);
    }

    static Ticks ToTicks(const FILETIME& time)
    {
        const std::uint64_t high = time.dwHighDateTime;
        return Ticks(static_cast<std::int64_t>(high << 32U | time.dwLowDateTime));
    }

    Ticks m_processorStart = ProcessorTime();
    std::chrono::steady_clock::time_point m_wallStart = std::chrono::steady_clock::now();
};

/// The most bytes of memory that the process ever had at once.
inline std::size_t PeakMemory()
{
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof(memory));
    return memory.PeakWorkingSetSize;
}
} // namespace bench
