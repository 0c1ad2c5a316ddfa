#include "host/report/pagesize.h"

#include <charconv>
#include <string>

#include "host/xml/elementreader.h"
#include "host/xml/markuptext.h"

namespace host::report
{
namespace
{
/// Ends the reading: nothing but the root is of interest.
struct RootFound
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

PageSize ReadPageSize(std::string_view markupStart)
{
    PageSize size;
    try
    {
        xml::ReadElements(ToLastTag(markupStart), [&](const xml::Element& root) {
            size = {ToNumber(root.Find("Width")), ToNumber(root.Find("Height"))};
            throw RootFound();
        });
    }
    catch (const RootFound&)
    {
    }
    catch (const xml::MarkupError&)
    {
        // Nothing that this page's report can say more of.
    }
    return size;
}
} // namespace host::report
