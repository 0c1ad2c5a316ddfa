#include "host/xps/pagemarkup.h"

#include <charconv>
#include <utility>
#include <vector>

#include "host/xml/markup.h"
#include "host/xml/reader.h"
#include "host/xps/alternatecontent.h"
#include "host/xps/xpsvocabulary.h"

namespace host::xps
{
namespace
{
enum class Extent
{
    Start,
    Whole
};

/// Ends the reading of a page's start: only the root and its first element are of interest.
struct StartFound
{
};

/// Ends the reading: the element should be in a namespace of XPS.
struct ForeignElement
{
    std::string localName;
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

/// Reads a page's root and the root's first element.
class PageListener final : public xml::Listener
{
public:
    PageListener(PageMarkup& page, Extent extent) : m_page(page), m_extent(extent) {}

    bool WantsMore() const override { return m_seen < 2; }

    void OnStart(xml::Element element) override
    {
        if (m_seen == 0 && m_alternatives.Hides(element))
        {
            return;
        }
        m_seen == 0 ? TakeRoot(element) : TakeFirst(element);
        ++m_seen;
    }

    bool HasRoot() const noexcept { return m_seen > 0; }

private:
    void TakeRoot(const xml::Element& root)
    {
        m_page.size = {ToNumber(root.Find("Width")), ToNumber(root.Find("Height"))};
        RequireXps(root);
    }

    void TakeFirst(const xml::Element& element)
    {
        if (element.localName == "Canvas")
        {
            m_page.transform = ToTransform(element.Find("RenderTransform"));
            RequireXps(element);
        }
        if (m_extent == Extent::Start)
        {
            throw StartFound();
        }
    }

    void RequireXps(const xml::Element& element) const
    {
        if (m_extent == Extent::Whole && !IsXpsNamespace(element.namespaceUri))
        {
            throw ForeignElement{element.localName};
        }
    }

    PageMarkup& m_page;
    Extent m_extent;
    AlternateContent m_alternatives;
    int m_seen = 0;
};

/// Cuts markup off after its last tag, so that no character is incomplete.
std::string_view ToLastTag(std::string_view markup)
{
    const std::size_t tagEnd = markup.rfind('>');
    if (tagEnd == std::string_view::npos)
    {
        return markup;
    }
    // In UTF-16 the last character may lack its second byte.
    return markup.substr(0, (tagEnd + 2) & ~std::size_t{1});
}
} // namespace

PageMarkup ReadPageStart(std::string_view markupStart)
{
    PageMarkup page;
    PageListener listener(page, Extent::Start);
    try
    {
        xml::Reader().Read(ToLastTag(markupStart), listener);
    }
    catch (const StartFound&)
    {
    }
    catch (const xml::MarkupError&)
    {
        // The start says nothing more.
    }
    return page;
}

PageMarkup ReadPage(std::string_view markup)
{
    PageMarkup page;
    PageListener listener(page, Extent::Whole);
    xml::Reader reader;
    try
    {
        reader.Read(markup, listener);
        page.fault = listener.HasRoot() ? "" : "is no XPS page: its alternate content has no fallback";
    }
    catch (const ForeignElement& element)
    {
        page.fault = "is no XPS page: " + xml::FormatPlace(reader.FailedAt()) + ": <" + element.localName +
                     "> lies in no XPS or OpenXPS namespace";
    }
    catch (const xml::MarkupError& fault)
    {
        page.fault = fault.what();
    }
    return page;
}
} // namespace host::xps
