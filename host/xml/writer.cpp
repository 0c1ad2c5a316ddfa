#include "host/xml/writer.h"

#include <utility>

namespace host::xml
{
std::string Escape(std::string_view text)
{
    std::string escaped;
    escaped.reserve(text.size());
    for (const char c : text)
    {
        switch (c)
        {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        case '\t':
        case '\n':
        case '\r':
            escaped.append("&#").append(std::to_string(static_cast<int>(c))).append(";");
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

Writer::Writer() : m_markup("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n") {}

void Writer::Start(std::string_view name)
{
    CloseTag();
    m_markup.append("<").append(name);
    m_open.emplace_back(name);
    m_isInTag = true;
}

void Writer::Attribute(std::string_view name, std::string_view value)
{
    m_markup.append(" ").append(name).append("=\"").append(Escape(value)).append("\"");
}

void Writer::Text(std::string_view text)
{
    if (!text.empty())
    {
        CloseTag();
        m_markup += Escape(text);
    }
}

void Writer::End()
{
    if (std::exchange(m_isInTag, false))
    {
        m_markup += "/>";
    }
    else
    {
        m_markup.append("</").append(m_open.back()).append(">");
    }
    m_open.pop_back();
}

void Writer::CloseTag()
{
    m_markup += std::exchange(m_isInTag, false) ? ">" : "";
}
} // namespace host::xml
