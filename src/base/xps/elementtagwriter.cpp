#include "base/xps/elementtagwriter.h"

#include <string_view>

namespace base::xps
{
namespace
{
std::string_view StripEnds(std::string_view text, std::string_view stripped)
{
    const auto first = text.find_first_not_of(stripped);
    if (first == std::string_view::npos)
    {
        return {};
    }
    return text.substr(first, text.find_last_not_of(stripped) + 1 - first);
}
} // namespace

ElementTagWriter::~ElementTagWriter()
{
    while (!m_endTags.empty())
    {
        *m_pOutput << m_endTags.top();
        m_endTags.pop();
    }
}

std::string ElementTagWriter::CleanTagText(const std::string& text) const
{
    return std::string(StripEnds(StripEnds(text, " "), "<>"));
}

std::string ElementTagWriter::MakeStartTag(const std::string& text) const
{
    return "<" + text + ">";
}

std::string ElementTagWriter::MakeEndTag(const std::string& text) const
{
    return "</" + text.substr(0, text.find(' ')) + ">";
}

void ElementTagWriter::WriteStartTag(const std::string& text)
{
    *m_pOutput << MakeStartTag(CleanTagText(text));
    m_endTags.push(MakeEndTag(text));
}

void ElementTagWriter::DropEndTags() noexcept
{
    while (!m_endTags.empty())
    {
        m_endTags.pop();
    }
}
} // namespace base::xps
