#pragma once

#include <cstdint>

#include "platform/win32.h"

namespace support
{
/// The processor time of the calling thread, which does not depend on other programs.
inline double ProcessorSeconds()
{
    FILETIME created;
    FILETIME ended;
    FILETIME kernel;
    FILETIME user;
    GetThreadTimes(GetCurrentThread(), &created, &ended, &kernel, &user);
    const auto seconds = [](const FILETIME& time) {
        return (static_cast<double>(time.dwHighDateTime) * 4294967296.0 + time.dwLowDateTime) / 1e7;
    };
    return seconds(kernel) + seconds(user);
}
} // namespace support
