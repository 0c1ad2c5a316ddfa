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
/// What a call does to a job; most do nothing that counts.
enum class CallRole
{
    Other,
    /// Hands the part that the call is about to the filter, or nothing after the last one.
    HandsOutPart,
    /// Takes a part from the filter.
    TakesPart,
    /// Initialises the filter or runs it: the result is that of the job.
    RunsFilter
};

/// A call of the pipeline's interfaces that a filter made, or that was made of the filter.
struct TracedCall
{
    /// As "IFixedPage::GetStream".
    std::string_view method;
    /// The part or the property that the call was about; may be empty.
    std::string subject;
    HRESULT result;
    CallRole role;
};

/// Answers the calls of the pipeline's endpoints: maps an exception to the call's HRESULT, keeps the first
/// one for the host, and reports each call to the listener in the order in which they end. May be used on any
/// thread.
class CallTrace
{
public:
    using Listener = std::function<void(const TracedCall&)>;

    /// Without a listener no call is reported.
    explicit CallTrace(Listener listener = {}) : m_listener(std::move(listener)) {}

    template <typename Body>
    [[nodiscard]] HRESULT Answer(std::string_view method,
                                 std::string_view subject,
                                 Body&& body,
                                 CallRole role = CallRole::Other) noexcept
    {
        const HRESULT result = Attempt(body);
        Record(method, subject, result, role);
        return result;
    }

    /// The first half of Answer: the call is not reported.
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

    /// The second half, and for calls without a result.
    void Record(std::string_view method,
                std::string_view subject,
                HRESULT result,
                CallRole role = CallRole::Other) noexcept;

    /// The first exception of an endpoint or of the listener: a failure of the host and not of the filter.
    /// Null for none.
    std::exception_ptr GetHostFailure() const;

private:
    void KeepFailure() noexcept;

    mutable std::mutex m_lock;
    Listener m_listener;
    std::exception_ptr m_failure;
};
} // namespace host::pipeline
