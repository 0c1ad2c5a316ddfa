#include "host/xml/elementreader.h"

#include <algorithm>
#include <utility>

#include "host/xml/markuptext.h"

namespace host::xml
{
namespace
{
using ElementReceiver = std::function<void(const Element&)>;
using TextReceiver = std::function<void(const std::string& text, int depth)>;

/// Forwards start tags, with their depth and declarations, and the text between them.
class ElementListener final : public MarkupListener
{
public:
    ElementListener(const ElementReceiver& onElement, const TextReceiver& onText)
        : m_onElement(onElement), m_onText(onText)
    {
    }

    void OnPrefix(std::string prefix, std::string namespaceUri) override
    {
        m_prefixes.push_back({std::move(prefix), std::move(namespaceUri)});
    }
    void OnStart(std::string namespaceUri, std::string localName, std::vector<Attribute> attributes) override
    {
        TellText();
        m_onElement({std::move(namespaceUri),
                     std::move(localName),
                     std::move(attributes),
                     m_depth++,
                     std::exchange(m_prefixes, {})});
    }
    void OnEnd() override
    {
        TellText();
        --m_depth;
    }
    void OnText(const std::string& text) override { m_text += text; }

private:
    void TellText()
    {
        const std::string text = std::exchange(m_text, {});
        if (!text.empty())
        {
            m_onText(text, m_depth - 1);
        }
    }

    const ElementReceiver& m_onElement;
    const TextReceiver& m_onText;
    int m_depth = 0;
    // Of the tag that comes next.
    std::vector<PrefixBinding> m_prefixes;
    // Since the last tag; the reader hands text out in pieces.
    std::string m_text;
};
} // namespace

const std::string* Element::Find(std::string_view attributeName) const
{
    const auto found = std::find_if(attributes.begin(), attributes.end(), [&](const Attribute& attribute) {
        return attribute.namespaceUri.empty() && attribute.localName == attributeName;
    });
    return found == attributes.end() ? nullptr : &found->value;
}

void ReadElements(std::string_view markup, const std::function<void(const Element&)>& onElement)
{
    ReadMarkup(markup, onElement, [](const std::string&, int) {});
}

void ReadMarkup(std::string_view markup, const ElementReceiver& onElement, const TextReceiver& onText)
{
    const std::string text = DecodeMarkup(markup);
    if (text.find_first_not_of(" \t\r\n") == text.npos)
    {
        throw MarkupError("is empty");
    }
    ElementListener listener(onElement, onText);
    const std::string fault = SaxReader().Read(text, listener);
    if (!fault.empty())
    {
        throw MarkupError("is not well-formed: " + fault);
    }
}

std::string FindMarkupFault(std::string_view markup)
{
    try
    {
        ReadElements(markup, [](const Element&) {});
        return {};
    }
    catch (const MarkupError& fault)
    {
        return fault.what();
    }
}
} // namespace host::xml
