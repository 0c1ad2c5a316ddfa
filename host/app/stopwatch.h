#pragma once

#include <chrono>
#include <string>

#include "base/logging/log.h"

namespace host::app
{
/// Starts on construction.
class Stopwatch
{
public:
    /// "0.52 s".
    std::string FormatElapsed() const
    {
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - m_start;
        return base::logging::FormatString("%.2f s", elapsed.count());
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};
} // namespace host::app
