#pragma once

#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>

#include "base/logging/boundary.h"
#include "platform/win32.h"

namespace host::pipeline
{
/// A call of the pipeline's interfaces that a filter made, or that was made of the filter.
struct TracedCall
{
    /// As "IFixedPage::GetStream".
    std::string_view method;
    /// The part or the property that the call was about; may be empty.
    std::string subject;
    HRESULT result;
};

/// Where every endpoint of the pipeline answers: turns what an endpoint throws into the call's HRESULT, keeps
/// the first such failure, or one of the listener, for the host, and tells the listener of each call in the
/// order in which they end. May be used on any thread.
class CallTrace
{
public:
    using Listener = std::function<void(const TracedCall&)>;

    /// Without a listener calls are answered only.
    explicit CallTrace(Listener listener = {}) : m_listener(std::move(listener)) {}

    template <typename Body>
    [[nodiscard]] HRESULT Answer(std::string_view method, std::string_view subject, Body&& body) noexcept
    {
        const HRESULT result = Attempt(body);
        Tell(method, subject, result);
        return result;
    }

    /// The first half of Answer: nobody is told.
    template <typename Body>
    [[nodiscard]] HRESULT Attempt(Body&& body) noexcept
    {
        try
        {
            return body();
        }
        catch (...)
        {
            KeepFailure();
            return base::exception::MapCurrentException();
        }
    }

    /// For calls that answer nothing.
    void Tell(std::string_view method, std::string_view subject, HRESULT result) noexcept;

    /// The first exception of an endpoint: the host's own failure, as opposed to the filter's. Null for none.
    std::exception_ptr GetHostFailure() const;

private:
    void KeepFailure() noexcept;

    mutable std::mutex m_lock;
    Listener m_listener;
    std::exception_ptr m_failure;
};
} // namespace host::pipeline
