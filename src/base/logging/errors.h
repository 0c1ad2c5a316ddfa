#pragma once

#include <exception>
#include <string>
#include <utility>

#include "base/logging/failure.h"
#include "platform/win32.h"

namespace base::exception
{
/// Carries a failed HRESULT to the COM boundary.
class HresultError : public std::exception
{
public:
    /// `path` names the raising source file, relative to the source tree.
    HresultError(HRESULT hr, const char* path, int line);
    HresultError(const HresultError&) = default;
    HresultError& operator=(const HresultError&) = default;
    ~HresultError() override = default;

    const char* what() const noexcept override { return message.c_str(); }
    virtual HRESULT GetHresult() const noexcept { return hresult; }

private:
    HRESULT hresult;
    // Ends in two line ends, the text's own and the format's (docs/surface.md).
    std::string message;
};

/// A failure that carries only its text.
class Error : public std::exception
{
public:
    explicit Error(std::string message) : m_message(std::move(message)) {}
    const char* what() const noexcept override { return m_message.c_str(); }

private:
    std::string m_message;
};

/// A feature accessor was asked for a feature id that it does not have.
class InvalidFeatureIdError : public Error
{
public:
    using Error::Error;
};

/// A feature accessor was asked for an option id that it does not have.
class InvalidOptionIdError : public Error
{
public:
    using Error::Error;
};

/// A feature accessor was asked for a print-ticket scope that it does not serve.
class NotSupportedException : public std::exception
{
public:
    const char* what() const noexcept override { return "this scope is not supported in this feature."; }
};

/// Thrown where the text of a query cannot be formatted; the DOM operations return its HRESULT. Nothing in
/// this module throws it: docs/surface.md says why it stays.
class CXDException : public std::exception
{
public:
    explicit CXDException(HRESULT hr) noexcept : m_hresult(hr) {}
    const char* what() const noexcept override { return "text cannot be formatted."; }
    HRESULT GetHresult() const noexcept { return m_hresult; }

private:
    HRESULT m_hresult;
};

/// Returns the system's text for an HRESULT, with the line end that system texts carry. For a value that the
/// system does not know: "Unknown error 0x", the value in hexadecimal and a line feed.
std::string GetErrorText(HRESULT hr);

/// Returns the thread's last Win32 error as a failing HRESULT; E_FAIL if the function that failed set none.
[[nodiscard]] HRESULT GetLastFailure() noexcept;

/// Throws HresultError for a failing HRESULT. All others are success: print-ticket calls succeed with codes
/// of their own.
void ThrowIfFailed(HRESULT hr, SourceLocation where = SourceLocation::Current());
} // namespace base::exception
