#include "host/resulttext.h"

#include "base/logging/errors.h"
#include "base/logging/log.h"

namespace host
{
std::string FormatResult(HRESULT result)
{
    return base::logging::FormatString("0x%08x", static_cast<unsigned>(result));
}

std::string DescribeResult(HRESULT result)
{
    std::string text = result == S_OK ? std::string() : base::exception::GetErrorText(result);
    while (!text.empty() && static_cast<unsigned char>(text.back()) <= ' ')
    {
        text.pop_back();
    }
    return text;
}
} // namespace host
