#include "host/pipeline/calltrace.h"

namespace host::pipeline
{
void CallTrace::Record(std::string_view method,
                       std::string_view subject,
                       HRESULT result,
                       CallRole role) noexcept
{
    try
    {
        const std::lock_guard lock(m_lock);
        if (m_listener)
        {
            m_listener({method, std::string(subject), result, role});
        }
    }
    catch (...)
    {
        KeepFailure();
    }
}

std::exception_ptr CallTrace::GetHostFailure() const
{
    const std::lock_guard lock(m_lock);
    return m_failure;
}

void CallTrace::KeepFailure() noexcept
{
    const std::lock_guard lock(m_lock);
    if (!m_failure)
    {
        m_failure = std::current_exception();
    }
}
} // namespace host::pipeline
