#include "host/pipeline/resulttext.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "base/logging/errors.h"
#include "base/logging/log.h"

namespace host::pipeline
{
namespace
{
struct CodeName
{
    std::uint32_t code;
    const char* name;
    /// Empty where the system has a text that says it.
    const char* words;
};

constexpr CodeName kCodes[] = {
    {0x00000000, "S_OK", ""},
    {0x80004001, "E_NOTIMPL", ""},
    {0x80004002, "E_NOINTERFACE", ""},
    {0x80004003, "E_POINTER", ""},
    {0x80004004, "E_ABORT", "the operation was stopped"},
    {0x80004005, "E_FAIL", ""},
    {0x8000FFFF, "E_UNEXPECTED", "a failure that has no code of its own"},
    {0x80070005, "E_ACCESSDENIED", ""},
    {0x8007000E, "E_OUTOFMEMORY", ""},
    {0x80070057, "E_INVALIDARG", ""},
    {0x80070490, "ERROR_NOT_FOUND", ""},
    // What the loader answers for a DLL.
    {0x8007007E, "ERROR_MOD_NOT_FOUND", "there is no such DLL, or one that it needs is missing"},
    {0x8007007F, "ERROR_PROC_NOT_FOUND", "a DLL that it needs lacks a function"},
    {0x800700C1, "ERROR_BAD_EXE_FORMAT", "it is no DLL for a process of 64 bits"},
    {0x8007045A, "ERROR_DLL_INIT_FAILED", "the DLL refused to start"},
    {0x80040111, "CLASS_E_CLASSNOTAVAILABLE", "the DLL does not have the filter's class"},
    // The system has OLE's texts for these codes, or none.
    {0x80040003, "E_PRINTTICKET_FORMAT", "the print ticket is not valid"},
    {0x80040004, "E_PRINTCAPABILITIES_FORMAT", "the print capabilities are not valid"},
    {0x80040005, "E_DELTA_PRINTTICKET_FORMAT", "the print ticket that is merged in is not valid"},
    {0x80040006, "E_PRINTDEVICECAPABILITIES_FORMAT", "the print device capabilities are not valid"}};

const CodeName* FindCode(HRESULT result)
{
    const auto* const found = std::find_if(std::begin(kCodes), std::end(kCodes), [&](const CodeName& each) {
        return each.code == static_cast<std::uint32_t>(result);
    });
    return found == std::end(kCodes) ? nullptr : found;
}
} // namespace

std::string FormatResult(HRESULT result)
{
    return base::logging::FormatString("0x%08x", static_cast<unsigned>(result));
}

std::string NameResult(HRESULT result)
{
    const CodeName* const known = FindCode(result);
    return known != nullptr ? known->name : FormatResult(result);
}

std::string DescribeResult(HRESULT result)
{
    if (result == S_OK)
    {
        return {};
    }
    const CodeName* const known = FindCode(result);
    if (known != nullptr && *known->words != 0)
    {
        return std::string(known->name) + ", " + known->words;
    }
    std::string text = base::exception::GetErrorText(result);
    while (!text.empty() && static_cast<unsigned char>(text.back()) <= ' ')
    {
        text.pop_back();
    }
    return text;
}
} // namespace host::pipeline
