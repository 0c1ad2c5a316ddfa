#include "host/xml/elementreader.h"

#include <algorithm>
#include <exception>
#include <string_view>
#include <utility>

#include "base/logging/boundary.h"
#include "base/logging/errors.h"
#include "base/utility/comobject.h"
#include "base/utility/comptr.h"
#include "base/utility/utf8.h"
#include "base/utility/variant.h"
#include "host/xml/markuptext.h"
#include "platform/msxml6.h"

namespace host::xml
{
namespace
{
using base::exception::ThrowIfFailed;
using base::utility::ComObject;
using base::utility::ComPtr;
using base::utility::MakeCom;

std::string Utf8Of(const wchar_t* text, int length)
{
    return length > 0 ? base::utility::ToUtf8(std::wstring(text, static_cast<std::size_t>(length)))
                      : std::string();
}

Attribute ReadAttribute(ISAXAttributes& attributes, int index)
{
    const wchar_t* uri = nullptr;
    const wchar_t* name = nullptr;
    const wchar_t* value = nullptr;
    int uriLength = 0;
    int nameLength = 0;
    int valueLength = 0;
    ThrowIfFailed(attributes.getURI(index, &uri, &uriLength));
    ThrowIfFailed(attributes.getLocalName(index, &name, &nameLength));
    ThrowIfFailed(attributes.getValue(index, &value, &valueLength));
    return {Utf8Of(uri, uriLength), Utf8Of(name, nameLength), Utf8Of(value, valueLength)};
}

/// Whether an attribute is none but declares a prefix; readers hand these out, each under names of its own.
bool IsDeclaration(ISAXAttributes& attributes, int index)
{
    const wchar_t* name = nullptr;
    int length = 0;
    ThrowIfFailed(attributes.getQName(index, &name, &length));
    const std::wstring_view qualified(name, static_cast<std::size_t>(length));
    return qualified == L"xmlns" || qualified.starts_with(L"xmlns:");
}

/// Forwards start tags and text. No exception may cross the reader's frames: the first one is kept here and
/// stops the reader.
class MarkupHandler final : public ComObject<ISAXContentHandler>
{
public:
    explicit MarkupHandler(const MarkupListener& listener) : m_listener(listener) {}

    void RethrowKept() const
    {
        if (m_kept != nullptr)
        {
            std::rethrow_exception(m_kept);
        }
    }

    STDMETHODIMP startElement(const wchar_t* uri,
                              int uriLength,
                              const wchar_t* localName,
                              int localNameLength,
                              const wchar_t*,
                              int,
                              ISAXAttributes* attributes) override
    {
        return base::exception::AtBoundary([&] {
            return Keep([&] {
                TellText();
                Element element{Utf8Of(uri, uriLength),
                                Utf8Of(localName, localNameLength),
                                {},
                                m_depth++,
                                std::exchange(m_prefixes, {})};
                int count = 0;
                ThrowIfFailed(attributes->getLength(&count));
                for (int index = 0; index < count; ++index)
                {
                    if (!IsDeclaration(*attributes, index))
                    {
                        element.attributes.push_back(ReadAttribute(*attributes, index));
                    }
                }
                m_listener.onElement(element);
            });
        });
    }

    STDMETHODIMP endElement(const wchar_t*, int, const wchar_t*, int, const wchar_t*, int) override
    {
        return base::exception::AtBoundary([&] {
            return Keep([&] {
                TellText();
                --m_depth;
            });
        });
    }

    STDMETHODIMP startPrefixMapping(const wchar_t* prefix,
                                    int prefixLength,
                                    const wchar_t* uri,
                                    int uriLength) override
    {
        return base::exception::AtBoundary([&] {
            m_prefixes.push_back({Utf8Of(prefix, prefixLength), Utf8Of(uri, uriLength)});
            return S_OK;
        });
    }

    STDMETHODIMP characters(const wchar_t* text, int length) override
    {
        return base::exception::AtBoundary([&] {
            if (m_listener.onText && length > 0)
            {
                m_text.append(text, static_cast<std::size_t>(length));
            }
            return S_OK;
        });
    }

    STDMETHODIMP putDocumentLocator(ISAXLocator*) override { return S_OK; }
    STDMETHODIMP startDocument() override { return S_OK; }
    STDMETHODIMP endDocument() override { return S_OK; }
    STDMETHODIMP endPrefixMapping(const wchar_t*, int) override { return S_OK; }
    STDMETHODIMP ignorableWhitespace(const wchar_t*, int) override { return S_OK; }
    STDMETHODIMP processingInstruction(const wchar_t*, int, const wchar_t*, int) override { return S_OK; }
    STDMETHODIMP skippedEntity(const wchar_t*, int) override { return S_OK; }

private:
    template <typename Action>
    HRESULT Keep(Action&& act)
    {
        try
        {
            act();
            return S_OK;
        }
        catch (...)
        {
            m_kept = std::current_exception();
            return E_FAIL;
        }
    }

    void TellText()
    {
        if (!m_text.empty())
        {
            m_listener.onText(base::utility::ToUtf8(std::exchange(m_text, {})), m_depth - 1);
        }
    }

    const MarkupListener& m_listener;
    std::exception_ptr m_kept;
    int m_depth = 0;
    // Of the tag that comes next.
    std::vector<PrefixBinding> m_prefixes;
    // Since the last tag; the reader hands text out in pieces.
    std::wstring m_text;
};

/// Remembers the reader's words for the first fault.
class FaultHandler final : public ComObject<ISAXErrorHandler>
{
public:
    const std::string& Fault() const noexcept { return m_fault; }

    STDMETHODIMP error(ISAXLocator* locator, const wchar_t* message, HRESULT) override
    {
        return Remember(locator, message);
    }
    STDMETHODIMP fatalError(ISAXLocator* locator, const wchar_t* message, HRESULT) override
    {
        return Remember(locator, message);
    }
    STDMETHODIMP ignorableWarning(ISAXLocator*, const wchar_t*, HRESULT) override { return S_OK; }

private:
    HRESULT Remember(ISAXLocator* locator, const wchar_t* message)
    {
        return base::exception::AtBoundary([&] {
            int line = 0;
            if (m_fault.empty() && locator != nullptr && SUCCEEDED(locator->getLineNumber(&line)))
            {
                m_fault = "line " + std::to_string(line) + ": ";
                m_fault += message != nullptr ? base::utility::ToUtf8(message) : "";
            }
            return S_OK;
        });
    }

    std::string m_fault;
};

ComPtr<IStream> StreamOf(std::string_view bytes)
{
    ComPtr<IStream> stream;
    ThrowIfFailed(CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive()));
    ThrowIfFailed(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr));
    ThrowIfFailed(stream->Seek({}, STREAM_SEEK_SET, nullptr));
    return stream;
}
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
    ReadMarkup(markup, {onElement, {}});
}

void ReadMarkup(std::string_view markup, const MarkupListener& listener)
{
    // A stream and not an array of bytes, of which Wine 8 parses all but the last one.
    base::utility::Variant text;
    VARIANT* const stream = text.Receive();
    V_UNKNOWN(stream) = StreamOf(DecodeMarkup(markup)).Detach();
    V_VT(stream) = VT_UNKNOWN;

    ComPtr<ISAXXMLReader> reader;
    ThrowIfFailed(CoCreateInstance(platform::kSaxXmlReader60,
                                   nullptr,
                                   CLSCTX_INPROC_SERVER,
                                   __uuidof(ISAXXMLReader),
                                   reader.ReceiveUntyped()));
    const auto tags = MakeCom<MarkupHandler>(listener);
    const auto faults = MakeCom<FaultHandler>();
    ThrowIfFailed(reader->putContentHandler(tags.Get()));
    ThrowIfFailed(reader->putErrorHandler(faults.Get()));

    const HRESULT parsed = reader->parse(text.Get());
    tags->RethrowKept();
    if (FAILED(parsed))
    {
        throw MarkupError("is not well-formed: " + (faults->Fault().empty()
                                                        ? base::exception::GetErrorText(parsed)
                                                        : faults->Fault()));
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
