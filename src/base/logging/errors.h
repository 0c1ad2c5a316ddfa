#pragma once

#include <exception>
#include <string>
#include <utility>

#include "base/logging/failure.h"
#include "platform/win32.h"

namespace base::exception
{
/// A failed HRESULT on its way to the COM boundary.
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
    // Ends in two line ends, the text's own and the format's; both are kept.
    std::string message;
};

/// A failure that carries nothing but its text.
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

/// For code that formats text for a query and fails; the DOM operations would answer with its HRESULT.
/// Nothing in this module does.
class CXDException : public std::exception
{
public:
    explicit CXDException(HRESULT hr) noexcept : m_hresult(hr) {}
    const char* what() const noexcept override { return "text cannot be formatted."; }
    HRESULT GetHresult() const noexcept { return m_hresult; }

private:
    HRESULT m_hresult;
};

/// The system's text for an HRESULT, with the line end that system texts carry; for a value unknown to the
/// system "Unknown error 0x", the value in hexadecimal and a line feed.
std::string GetErrorText(HRESULT hr);

/// The thread's last Win32 error as a failing HRESULT; E_FAIL where a function failed without setting one.
[[nodiscard]] HRESULT GetLastFailure() noexcept;

/// Throws HresultError for a failing HRESULT. Success is any other one: print-ticket calls succeed with
/// codes of their own.
void ThrowIfFailed(HRESULT hr, SourceLocation where = SourceLocation::Current());
} // namespace base::exception
