#include "host/report/calllist.h"

#include "base/logging/errors.h"
#include "base/logging/log.h"
#include "host/report/htmltext.h"

namespace host::report
{
namespace
{
constexpr std::size_t kMostText = 65'536;
} // namespace

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

void CallList::Add(const pipeline::TracedCall& call)
{
    ++m_count;
    if (m_text.size() >= kMostText)
    {
        ++m_leftOut;
        return;
    }
    m_text.append(FormatResult(call.result)).append("  ").append(call.method);
    m_text.append(call.subject.empty() ? "" : "  ").append(EscapeHtml(call.subject));
    const std::string meaning = DescribeResult(call.result);
    m_text.append(meaning.empty() ? "" : "  (" + EscapeHtml(meaning) + ")").append("\n");
}

void CallList::Clear()
{
    *this = {};
}
} // namespace host::report
