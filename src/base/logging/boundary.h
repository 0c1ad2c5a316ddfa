#pragma once

#include "platform/win32.h"

namespace base::exception
{
/// Maps the exception that is being handled to an HRESULT; call it in a catch clause only. std::bad_alloc
/// gives E_OUTOFMEMORY, an HresultError its own code, any other standard exception E_FAIL, anything else
/// E_UNEXPECTED. The text of the exception is discarded. Every method that COM or the pipeline calls uses
/// this one mapper.
HRESULT MapCurrentException() noexcept;

/// Runs the body of a method that COM or the pipeline calls. Returns the body's HRESULT, or the mapped
/// HRESULT of what the body throws.
template <typename Body>
[[nodiscard]] HRESULT AtBoundary(Body&& body) noexcept
{
    try
    {
        return body();
    }
    catch (...)
    {
        return MapCurrentException();
    }
}
} // namespace base::exception
