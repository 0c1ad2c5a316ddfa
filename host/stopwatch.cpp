#include "host/stopwatch.h"

#include "base/logging/log.h"

namespace host
{
std::string Stopwatch::FormatElapsed() const
{
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - m_start;
    return base::logging::FormatString("%.2f s", elapsed.count());
}
} // namespace host
