#include "host/xml/saxreader.h"

#include <exception>
#include <utility>

#include "base/logging/boundary.h"
#include "base/logging/errors.h"
#include "base/utility/comobject.h"
#include "base/utility/comptr.h"
#include "base/utility/utf8.h"
#include "base/utility/variant.h"
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

MarkupPlace PlaceOf(ISAXLocator* locator)
{
    MarkupPlace place;
    if (locator != nullptr)
    {
        locator->getLineNumber(&place.line);
        locator->getColumnNumber(&place.column);
    }
    return place;
}

/// The attributes that declare no namespace.
std::vector<Attribute> ReadAttributes(ISAXAttributes& source)
{
    int count = 0;
    ThrowIfFailed(source.getLength(&count));
    std::vector<Attribute> attributes;
    for (int index = 0; index < count; ++index)
    {
        const wchar_t* uri = nullptr;
        const wchar_t* local = nullptr;
        const wchar_t* qualified = nullptr;
        const wchar_t* value = nullptr;
        int uriLength = 0;
        int localLength = 0;
        int qualifiedLength = 0;
        int valueLength = 0;
        ThrowIfFailed(
            source.getName(index, &uri, &uriLength, &local, &localLength, &qualified, &qualifiedLength));
        ThrowIfFailed(source.getValue(index, &value, &valueLength));
        const std::string name = Utf8Of(qualified, qualifiedLength);
        if (name != "xmlns" && !name.starts_with("xmlns:"))
        {
            attributes.push_back(
                {Utf8Of(uri, uriLength), Utf8Of(local, localLength), Utf8Of(value, valueLength)});
        }
    }
    return attributes;
}

/// Hands the reader's events on. No exception may cross the reader's frames: the first one is kept here and
/// stops the reader.
class ContentHandler final : public ComObject<ISAXContentHandler>
{
public:
    explicit ContentHandler(MarkupListener& listener) : m_listener(listener) {}

    const std::exception_ptr& Kept() const noexcept { return m_kept; }
    MarkupPlace KeptPlace() const noexcept { return m_keptPlace; }

    STDMETHODIMP putDocumentLocator(ISAXLocator* locator) override
    {
        m_pLocator = locator;
        return S_OK;
    }
    STDMETHODIMP startPrefixMapping(const wchar_t* prefix,
                                    int prefixLength,
                                    const wchar_t* uri,
                                    int uriLength) override
    {
        return Forward([&] { m_listener.OnPrefix(Utf8Of(prefix, prefixLength), Utf8Of(uri, uriLength)); });
    }
    STDMETHODIMP endPrefixMapping(const wchar_t* prefix, int prefixLength) override
    {
        return Forward([&] { m_listener.OnPrefixEnd(Utf8Of(prefix, prefixLength)); });
    }
    STDMETHODIMP startElement(const wchar_t* uri,
                              int uriLength,
                              const wchar_t* local,
                              int localLength,
                              const wchar_t* /*qualified*/,
                              int /*qualifiedLength*/,
                              ISAXAttributes* attributes) override
    {
        return Forward([&] {
            m_listener.OnStart(
                Utf8Of(uri, uriLength), Utf8Of(local, localLength), ReadAttributes(*attributes));
        });
    }
    STDMETHODIMP endElement(const wchar_t*, int, const wchar_t*, int, const wchar_t*, int) override
    {
        return Forward([&] { m_listener.OnEnd(); });
    }
    STDMETHODIMP characters(const wchar_t* text, int length) override
    {
        return Forward([&] { m_listener.OnText(Utf8Of(text, length)); });
    }
    STDMETHODIMP startDocument() override { return S_OK; }
    STDMETHODIMP endDocument() override { return S_OK; }
    STDMETHODIMP ignorableWhitespace(const wchar_t*, int) override { return S_OK; }
    STDMETHODIMP processingInstruction(const wchar_t*, int, const wchar_t*, int) override { return S_OK; }
    STDMETHODIMP skippedEntity(const wchar_t*, int) override { return S_OK; }

private:
    template <typename Action>
    HRESULT Forward(Action&& act) noexcept
    {
        try
        {
            if (m_listener.WantsMore())
            {
                act();
            }
            return S_OK;
        }
        catch (...)
        {
            m_kept = std::current_exception();
            m_keptPlace = PlaceOf(m_pLocator);
            return E_FAIL;
        }
    }

    MarkupListener& m_listener;
    // Lent by the reader for the time of the parse; holding it would close a circle of references.
    ISAXLocator* m_pLocator = nullptr;
    std::exception_ptr m_kept;
    MarkupPlace m_keptPlace;
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
            if (m_fault.empty())
            {
                std::string words = message != nullptr ? base::utility::ToUtf8(message) : "";
                words.erase(words.find_last_not_of("\r\n") + 1);
                m_fault = FormatPlace(PlaceOf(locator)) + ": " + words;
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

std::string SaxReader::Read(std::string_view bytes, MarkupListener& listener)
{
    ComPtr<ISAXXMLReader> reader;
    ThrowIfFailed(CoCreateInstance(platform::kSaxXmlReader60,
                                   nullptr,
                                   CLSCTX_INPROC_SERVER,
                                   __uuidof(ISAXXMLReader),
                                   reader.ReceiveUntyped()));
    // Wine takes this and reads on, but knows none of the entities that a document type declares.
    ThrowIfFailed(reader->putFeature(L"prohibit-dtd", VARIANT_TRUE));
    const auto content = MakeCom<ContentHandler>(listener);
    const auto faults = MakeCom<FaultHandler>();
    ThrowIfFailed(reader->putContentHandler(content.Get()));
    ThrowIfFailed(reader->putErrorHandler(faults.Get()));

    // A stream and not an array of bytes, of which Wine 8 parses all but the last one.
    const HRESULT parsed = reader->parse(base::utility::Variant(StreamOf(bytes).Get()).Get());
    if (content->Kept() != nullptr)
    {
        m_failedAt = content->KeptPlace();
        std::rethrow_exception(content->Kept());
    }
    if (parsed == E_OUTOFMEMORY)
    {
        ThrowIfFailed(parsed);
    }
    const bool hasWords = !faults->Fault().empty();
    return SUCCEEDED(parsed) ? "" : hasWords ? faults->Fault() : base::exception::GetErrorText(parsed);
}
} // namespace host::xml
