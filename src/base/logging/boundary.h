#pragma once

#include "platform/win32.h"

namespace base::exception
{
/// The HRESULT of the exception that is being handled; to be called in a catch clause only. E_OUTOFMEMORY for
/// std::bad_alloc, an HresultError's own code, E_FAIL for any other standard exception, else E_UNEXPECTED.
/// This is the module's way from an exception to an HRESULT; the text of the exception ends here.
HRESULT MapCurrentException() noexcept;

/// Runs the body of a method that COM or the pipeline calls: answers its HRESULT, or the one of what it
/// throws.
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
