#include "host/xps/pagemarkup.h"

#include <algorithm>

#include "host/xml/reader.h"
#include "host/xml/text.h"
#include "host/xps/alternatecontent.h"
#include "host/xps/xpsvocabulary.h"

namespace host::xps
{
namespace
{
/// Ends the reading: the element should be in a namespace of XPS.
struct ForeignElement
{
    std::string localName;
};

std::optional<double> ToNumber(const std::string* text)
{
    return text == nullptr ? std::nullopt : xml::ParseNumber<double>(*text);
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
    for (double& number : transform)
    {
        const std::size_t end = std::min(rest.find(','), rest.size());
        const auto value = xml::ParseNumber<double>(rest.substr(0, end));
        const bool isLast = &number == &transform.back();
        if (!value || isLast != (end == rest.size()))
        {
            return std::nullopt;
        }
        number = *value;
        rest.remove_prefix(isLast ? end : end + 1);
    }
    return transform;
}

/// Reads a page's root and the root's first element.
class PageListener final : public xml::Listener
{
public:
    PageListener(PageMarkup& page, bool checksNamespaces) : m_page(page), m_checksNamespaces(checksNamespaces)
    {
    }

    bool WantsMore() const override { return m_seen < 2; }

    void OnStart(xml::Element element) override
    {
        if (m_seen == 0 && m_alternatives.Hides(element))
        {
            return;
        }
        const bool isRoot = m_seen++ == 0;
        const bool isCanvas = !isRoot && element.localName == "Canvas";
        if (isRoot)
        {
            m_page.size = {ToNumber(element.Find("Width")), ToNumber(element.Find("Height"))};
        }
        if (isCanvas)
        {
            m_page.transform = ToTransform(element.Find("RenderTransform"));
        }
        if (m_checksNamespaces && (isRoot || isCanvas) && !IsXpsNamespace(element.namespaceUri))
        {
            throw ForeignElement{element.localName};
        }
    }

    bool HasRoot() const noexcept { return m_seen > 0; }

private:
    PageMarkup& m_page;
    bool m_checksNamespaces;
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
    PageListener listener(page, false);
    try
    {
        xml::Reader().Read(ToLastTag(markupStart), listener);
    }
    catch (const xml::MarkupError&)
    {
        // What is cut off is not well-formed.
    }
    return page;
}

PageMarkup ReadPage(std::string_view markup)
{
    PageMarkup page;
    PageListener listener(page, true);
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
