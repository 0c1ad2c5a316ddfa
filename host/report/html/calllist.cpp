#include "host/report/html/calllist.h"

#include "host/pipeline/resulttext.h"
#include "host/report/html/htmltext.h"

namespace host::report::html
{
namespace
{
constexpr std::size_t kMostText = 65'536;
} // namespace

void CallList::Add(const pipeline::TracedCall& call)
{
    ++m_count;
    if (m_text.size() >= kMostText)
    {
        ++m_leftOut;
        return;
    }
    m_text.append(pipeline::FormatResult(call.result)).append("  ").append(call.method);
    m_text.append(call.subject.empty() ? "" : "  ").append(EscapeHtml(call.subject));
    const std::string meaning = pipeline::DescribeResult(call.result);
    m_text.append(meaning.empty() ? "" : "  (" + EscapeHtml(meaning) + ")").append("\n");
}

void CallList::Clear()
{
    *this = {};
}
} // namespace host::report::html
