#pragma once

#include <type_traits>

#include "base/logging/boundary.h"
#include "base/logging/errors.h"

namespace base::xps::printschema
{
/// The result of DOM operations that find nothing.
inline constexpr HRESULT kNotFound = __HRESULT_FROM_WIN32(ERROR_NOT_FOUND);

/// Runs the body of a DOM operation and maps its exceptions to HRESULTs: a CXDException to the HRESULT that
/// it carries, others as AtBoundary does. Returns the body's HRESULT; S_OK for a body that returns void.
template <typename Body>
[[nodiscard]] HRESULT AtDomBoundary(Body&& body) noexcept
{
    return exception::AtBoundary([&]() -> HRESULT {
        try
        {
            if constexpr (std::is_void_v<decltype(body())>)
            {
                body();
                return S_OK;
            }
            else
            {
                return body();
            }
        }
        catch (const exception::CXDException& error)
        {
            return error.GetHresult();
        }
    });
}

/// Throws E_POINTER if a pointer is null.
template <typename... Objects>
void RequirePointers(const Objects*... pointers)
{
    if (!(pointers && ...))
    {
        exception::ThrowIfFailed(E_POINTER);
    }
}

/// Throws E_POINTER if an out-pointer is null; else clears what they point to.
template <typename... Results>
void ClearResults(Results**... results)
{
    RequirePointers(results...);
    ((*results = nullptr), ...);
}

/// Whether an operation succeeded that is allowed to fail. Throws if memory ran out, as that does not depend
/// on the document.
inline bool HasSucceeded(HRESULT hr)
{
    if (hr == E_OUTOFMEMORY)
    {
        exception::ThrowIfFailed(hr);
    }
    return SUCCEEDED(hr);
}

inline bool IsEmpty(const wchar_t* text) noexcept
{
    return text == nullptr || *text == L'\0';
}

/// Throws E_INVALIDARG if a text is null or empty.
template <typename... Characters>
void RequireText(const Characters*... texts)
{
    if ((IsEmpty(texts) || ...))
    {
        exception::ThrowIfFailed(E_INVALIDARG);
    }
}
} // namespace base::xps::printschema
