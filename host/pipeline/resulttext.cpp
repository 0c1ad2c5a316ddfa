#include "host/pipeline/resulttext.h"

#include <cstdint>

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
};

// The system has OLE's texts for these codes, or none.
constexpr CodeName kPrintTicketCodes[] = {
    {0x80040003, "E_PRINTTICKET_FORMAT, the print ticket is not valid"},
    {0x80040004, "E_PRINTCAPABILITIES_FORMAT, the print capabilities are not valid"},
    {0x80040005, "E_DELTA_PRINTTICKET_FORMAT, the print ticket that is merged in is not valid"},
    {0x80040006, "E_PRINTDEVICECAPABILITIES_FORMAT, the print device capabilities are not valid"}};
} // namespace

std::string FormatResult(HRESULT result)
{
    return base::logging::FormatString("0x%08x", static_cast<unsigned>(result));
}

std::string DescribeResult(HRESULT result)
{
    if (result == S_OK)
    {
        return {};
    }
    for (const auto& [code, name] : kPrintTicketCodes)
    {
        if (code == static_cast<std::uint32_t>(result))
        {
            return name;
        }
    }
    std::string text = base::exception::GetErrorText(result);
    while (!text.empty() && static_cast<unsigned char>(text.back()) <= ' ')
    {
        text.pop_back();
    }
    return text;
}
} // namespace host::pipeline
