#pragma once

#include <type_traits>

#include "base/logging/boundary.h"
#include "base/logging/errors.h"

namespace base::xps::printschema
{
/// What the DOM operations answer when nothing in the document matches.
inline constexpr HRESULT kNotFound = __HRESULT_FROM_WIN32(ERROR_NOT_FOUND);

/// The DOM operations' way from an exception to the HRESULT that they answer with: as at the COM boundary,
/// and text that cannot be formatted by the HRESULT it carries. A body without a result answers S_OK.
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

/// Raises E_POINTER when a pointer is null.
template <typename... Objects>
void RequirePointers(const Objects*... pointers)
{
    if (!(pointers && ...))
    {
        exception::ThrowIfFailed(E_POINTER);
    }
}

/// Raises E_POINTER when an out-pointer is null, or else clears what they point at.
template <typename... Results>
void ClearResults(Results**... results)
{
    RequirePointers(results...);
    ((*results = nullptr), ...);
}

/// For steps that put up with failing: whether one has succeeded. Want of memory says nothing of the document
/// and is raised.
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

/// Raises E_INVALIDARG when a text is null or empty.
template <typename... Characters>
void RequireText(const Characters*... texts)
{
    if ((IsEmpty(texts) || ...))
    {
        exception::ThrowIfFailed(E_INVALIDARG);
    }
}
} // namespace base::xps::printschema
