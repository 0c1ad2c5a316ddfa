#include "host/report/calllist.h"

#include "base/logging/log.h"
#include "host/report/htmltext.h"
#include "host/resulttext.h"

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
