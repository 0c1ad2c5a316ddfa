#include "base/xps/markupreader.h"

#include <exception>

#include "base/logging/errors.h"
#include "base/utility/comobject.h"
#include "base/utility/comptr.h"
#include "base/utility/variant.h"
#include "base/xml/xmlutility.h"

namespace base::xps
{
namespace
{
using exception::ThrowIfFailed;
using utility::ComPtr;

/// Forwards events to a handler that may throw. An exception that crosses the reader's frames leaks the
/// reader's state, so this keeps the exception and returns E_FAIL, which stops the reader.
class ForwardingHandler final : public utility::ComObject<ISAXContentHandler>
{
public:
    explicit ForwardingHandler(ISAXContentHandler& target) : m_pTarget(&target) {}

    void RethrowFailure() const
    {
        if (m_failure)
        {
            std::rethrow_exception(m_failure);
        }
    }

    STDMETHODIMP putDocumentLocator(ISAXLocator* locator) override
    {
        return Forward([&] { return m_pTarget->putDocumentLocator(locator); });
    }
    STDMETHODIMP startDocument() override
    {
        return Forward([&] { return m_pTarget->startDocument(); });
    }
    STDMETHODIMP endDocument() override
    {
        return Forward([&] { return m_pTarget->endDocument(); });
    }
    STDMETHODIMP startPrefixMapping(const wchar_t* prefix,
                                    int prefixLength,
                                    const wchar_t* uri,
                                    int uriLength) override
    {
        return Forward([&] { return m_pTarget->startPrefixMapping(prefix, prefixLength, uri, uriLength); });
    }
    STDMETHODIMP endPrefixMapping(const wchar_t* prefix, int prefixLength) override
    {
        return Forward([&] { return m_pTarget->endPrefixMapping(prefix, prefixLength); });
    }
    STDMETHODIMP startElement(const wchar_t* uri,
                              int uriLength,
                              const wchar_t* localName,
                              int localNameLength,
                              const wchar_t* qualifiedName,
                              int qualifiedNameLength,
                              ISAXAttributes* attributes) override
    {
        return Forward([&] {
            return m_pTarget->startElement(
                uri, uriLength, localName, localNameLength, qualifiedName, qualifiedNameLength, attributes);
        });
    }
    STDMETHODIMP endElement(const wchar_t* uri,
                            int uriLength,
                            const wchar_t* localName,
                            int localNameLength,
                            const wchar_t* qualifiedName,
                            int qualifiedNameLength) override
    {
        return Forward([&] {
            return m_pTarget->endElement(
                uri, uriLength, localName, localNameLength, qualifiedName, qualifiedNameLength);
        });
    }
    STDMETHODIMP characters(const wchar_t* text, int length) override
    {
        return Forward([&] { return m_pTarget->characters(text, length); });
    }
    STDMETHODIMP ignorableWhitespace(const wchar_t* text, int length) override
    {
        return Forward([&] { return m_pTarget->ignorableWhitespace(text, length); });
    }
    STDMETHODIMP processingInstruction(const wchar_t* target,
                                       int targetLength,
                                       const wchar_t* data,
                                       int dataLength) override
    {
        return Forward(
            [&] { return m_pTarget->processingInstruction(target, targetLength, data, dataLength); });
    }
    STDMETHODIMP skippedEntity(const wchar_t* name, int length) override
    {
        return Forward([&] { return m_pTarget->skippedEntity(name, length); });
    }

private:
    template <typename Callback>
    HRESULT Forward(Callback&& callback) noexcept
    {
        // A reader may continue after a failure.
        if (m_failure)
        {
            return E_FAIL;
        }
        try
        {
            return callback();
        }
        catch (...)
        {
            m_failure = std::current_exception();
            return E_FAIL;
        }
    }

    // Not counted: the handler outlives the parse.
    ISAXContentHandler* m_pTarget;
    std::exception_ptr m_failure;
};

ComPtr<ISAXXMLReader> CreateReader()
{
    ComPtr<ISAXXMLReader> reader;
    ThrowIfFailed(CoCreateInstance(
        platform::kSaxXmlReader60, nullptr, CLSCTX_ALL, __uuidof(ISAXXMLReader), reader.ReceiveUntyped()));
    // The rewritten page needs the namespace declarations, which this reports as attributes.
    ThrowIfFailed(reader->putFeature(L"http://xml.org/sax/features/namespace-prefixes", VARIANT_TRUE));
    ThrowIfFailed(reader->putFeature(L"prohibit-dtd", VARIANT_TRUE));
    return reader;
}
} // namespace

void ParseMarkup(IStream& markup, ISAXContentHandler& handler)
{
    xml::XmlUtility::RefuseDocumentType(markup);
    const ComPtr<ISAXXMLReader> reader = CreateReader();
    const auto forwarder = utility::MakeCom<ForwardingHandler>(handler);
    ThrowIfFailed(reader->putContentHandler(forwarder.Get()));

    const HRESULT parsed = reader->parse(utility::Variant(&markup).Get());
    forwarder->RethrowFailure();
    ThrowIfFailed(parsed);
}
} // namespace base::xps
