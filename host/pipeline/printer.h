#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/win32.h"

namespace host::pipeline
{
/// The printer of a job, and the user who prints it.
class Printer
{
public:
    /// Opens a printer of the spooler; without a name the printer is offline and has only a made-up name.
    /// Throws std::runtime_error for a printer that cannot be opened, HresultError when the current user's
    /// token cannot be obtained.
    explicit Printer(const std::optional<std::wstring>& spoolerName);

    const std::wstring& Name() const noexcept { return m_name; }
    /// Null without a printer of the spooler.
    HANDLE Handle() const noexcept { return m_printer.get(); }
    /// A token that the current user can be impersonated with.
    HANDLE UserToken() const noexcept { return m_userToken.get(); }

private:
    struct PrinterCloser
    {
        void operator()(HANDLE printer) const noexcept;
    };
    struct HandleCloser
    {
        void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
    };
    using UniqueHandle = std::unique_ptr<void, HandleCloser>;

    static UniqueHandle DuplicateUserToken();

    std::wstring m_name;
    std::unique_ptr<void, PrinterCloser> m_printer;
    UniqueHandle m_userToken;
};
} // namespace host::pipeline
