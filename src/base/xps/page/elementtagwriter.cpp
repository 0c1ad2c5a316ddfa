#include "base/xps/page/elementtagwriter.h"

#include <utility>

namespace base::xps
{
namespace
{
void StripEnds(std::string& text, const char* stripped)
{
    text.erase(text.find_last_not_of(stripped) + 1);
    text.erase(0, text.find_first_not_of(stripped));
}
} // namespace

ElementTagWriter::~ElementTagWriter()
{
    *m_pOutput << m_endTags;
}

std::string ElementTagWriter::CleanTagText(std::string text) const
{
    StripEnds(text, " ");
    StripEnds(text, "<>");
    return text;
}

std::string ElementTagWriter::MakeStartTag(std::string text) const
{
    text.insert(0, 1, '<');
    text.push_back('>');
    return text;
}

std::string ElementTagWriter::MakeEndTag(const std::string& text) const
{
    std::string tag = "</";
    tag.append(text, 0, text.find(' '));
    tag.push_back('>');
    return tag;
}

void ElementTagWriter::WriteStartTag(std::string& text)
{
    const std::string endTag = MakeEndTag(text);
    text = MakeStartTag(CleanTagText(std::move(text)));
    *m_pOutput << text;
    m_endTags.insert(0, endTag);
}
} // namespace base::xps
