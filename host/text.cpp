#include "host/text.h"

namespace host
{
std::string ToOneLine(std::string_view text)
{
    std::string line;
    for (const char c : text)
    {
        const bool isControl = static_cast<unsigned char>(c) < ' ' || c == '\x7F';
        const char shown = isControl ? ' ' : c;
        if (shown != ' ' || (!line.empty() && line.back() != ' '))
        {
            line += shown;
        }
    }
    while (line.ends_with(' '))
    {
        line.pop_back();
    }
    return line;
}

std::string CountOf(std::size_t count, const char* what)
{
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}
} // namespace host
