#include "host/report/pagesize.h"

#include <charconv>
#include <string>

#include "host/xml/elementreader.h"
#include "host/xml/markuptext.h"

namespace host::report
{
namespace
{
/// Ends the reading: nothing but the root and what it begins with is of interest.
struct StartFound
{
};

std::optional<double> ToNumber(const std::string* text)
{
    if (text == nullptr)
    {
        return std::nullopt;
    }
    double value = 0.0;
    const char* const textEnd = text->data() + text->size();
    const auto [end, error] = std::from_chars(text->data(), textEnd, value);
    return error == std::errc() && end == textEnd ? std::optional(value) : std::nullopt;
}

/// Six numbers with commas between them.
std::optional<ContentTransform> ToTransform(const std::string* text)
{
    if (text == nullptr)
    {
        return std::nullopt;
    }
    ContentTransform transform{};
    std::string_view rest = *text;
    for (std::size_t index = 0; index < transform.size(); ++index)
    {
        const std::size_t comma = rest.find(',');
        const std::string number(rest.substr(0, comma));
        const auto value = ToNumber(&number);
        const bool isLast = index + 1 == transform.size();
        if (!value || (comma == std::string_view::npos) != isLast)
        {
            return std::nullopt;
        }
        transform[index] = *value;
        rest.remove_prefix(isLast ? rest.size() : comma + 1);
    }
    return transform;
}

/// Markup that was cut off somewhere, cut off behind its last tag, so that no character is halved.
std::string_view ToLastTag(std::string_view markup)
{
    const std::size_t tagEnd = markup.rfind('>');
    if (tagEnd == std::string_view::npos)
    {
        return markup;
    }
    // In UTF-16 the second byte of a character may still be to come.
    return markup.substr(0, (tagEnd + 2) & ~std::size_t{1});
}
} // namespace

PageStart ReadPageStart(std::string_view markupStart)
{
    PageStart start;
    try
    {
        xml::ReadElements(ToLastTag(markupStart), [&](const xml::Element& element) {
            if (element.depth > 0)
            {
                start.transform = element.localName == "Canvas" ? ToTransform(element.Find("RenderTransform"))
                                                                : std::nullopt;
                throw StartFound();
            }
            start.size = {ToNumber(element.Find("Width")), ToNumber(element.Find("Height"))};
        });
    }
    catch (const StartFound&)
    {
    }
    catch (const xml::MarkupError&)
    {
        // Nothing that this page's report can say more of.
    }
    return start;
}
} // namespace host::report
