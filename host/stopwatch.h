#pragma once

#include <chrono>
#include <string>

namespace host
{
/// Runs from its making on.
class Stopwatch
{
public:
    /// "0.52 s".
    std::string FormatElapsed() const;

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};
} // namespace host
