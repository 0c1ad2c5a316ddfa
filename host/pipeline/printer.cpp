#include "host/pipeline/printer.h"

#include <stdexcept>

#include "base/logging/errors.h"
#include "base/utility/utf8.h"

#include <winspool.h>

namespace host::pipeline
{
namespace
{
constexpr const wchar_t* kOfflineName = L"Offline printer";

void RequireSuccess(BOOL succeeded)
{
    if (!succeeded)
    {
        base::exception::ThrowIfFailed(HRESULT_FROM_WIN32(GetLastError()));
    }
}
} // namespace

void Printer::PrinterCloser::operator()(HANDLE printer) const noexcept
{
    ClosePrinter(printer);
}

Printer::Printer(const std::optional<std::wstring>& spoolerName)
    : m_name(spoolerName.value_or(kOfflineName)), m_userToken(DuplicateUserToken())
{
    if (!spoolerName)
    {
        return;
    }
    HANDLE printer = nullptr;
    if (!OpenPrinterW(m_name.data(), &printer, nullptr))
    {
        throw std::runtime_error("printer " + base::utility::ToUtf8(m_name) + ": " +
                                 base::exception::GetErrorText(HRESULT_FROM_WIN32(GetLastError())));
    }
    m_printer.reset(printer);
}

Printer::UniqueHandle Printer::DuplicateUserToken()
{
    HANDLE primary = nullptr;
    RequireSuccess(OpenProcessToken(GetCurrentProcess(), TOKEN_DUPLICATE | TOKEN_QUERY, &primary));
    const UniqueHandle owned(primary);
    HANDLE impersonation = nullptr;
    RequireSuccess(DuplicateToken(owned.get(), SecurityImpersonation, &impersonation));
    return UniqueHandle(impersonation);
}
} // namespace host::pipeline
