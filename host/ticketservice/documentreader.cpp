#include "ticketservice/documentreader.h"

#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "base/logging/boundary.h"
#include "base/logging/errors.h"
#include "base/logging/log.h"
#include "base/utility/comobject.h"
#include "base/utility/comptr.h"
#include "base/utility/utf8.h"
#include "platform/msxml6.h"
#include "ticketservice/streams.h"
#include "ticketservice/treebuilder.h"

namespace host::ticketservice
{
namespace
{
using base::exception::ThrowIfFailed;
using base::logging::FormatString;
using base::utility::ComObject;
using base::utility::ComPtr;
using base::utility::MakeCom;
using base::utility::ToUtf8;

std::string Narrow(const wchar_t* text, int length)
{
    return ToUtf8(std::wstring(text, static_cast<std::size_t>(length)));
}

int LineOf(ISAXLocator* locator)
{
    int line = 0;
    if (locator != nullptr)
    {
        locator->getLineNumber(&line);
    }
    return line;
}

/// The attributes that declare no namespace.
std::vector<TextAttribute> ReadAttributes(ISAXAttributes& source)
{
    int count = 0;
    ThrowIfFailed(source.getLength(&count));
    std::vector<TextAttribute> attributes;
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
        const std::string name = Narrow(qualified, qualifiedLength);
        if (name != "xmlns" && !name.starts_with("xmlns:"))
        {
            attributes.push_back(
                {{Narrow(uri, uriLength), Narrow(local, localLength)}, Narrow(value, valueLength)});
        }
    }
    return attributes;
}

/// Hands the reader's events on to the builder. No exception crosses the reader: the first one stops it and
/// is thrown again by RethrowFailure.
class ContentHandler : public ComObject<ISAXContentHandler>
{
public:
    explicit ContentHandler(TreeBuilder& builder) : m_builder(builder) {}

    void RethrowFailure() const
    {
        if (m_failure)
        {
            std::rethrow_exception(m_failure);
        }
    }

    STDMETHODIMP putDocumentLocator(ISAXLocator* locator) override
    {
        m_pLocator = locator;
        return S_OK;
    }
    STDMETHODIMP startDocument() override { return S_OK; }
    STDMETHODIMP endDocument() override { return S_OK; }
    STDMETHODIMP startPrefixMapping(const wchar_t* prefix,
                                    int prefixLength,
                                    const wchar_t* uri,
                                    int uriLength) override
    {
        return Forward([&] { m_builder.StartPrefix(Narrow(prefix, prefixLength), Narrow(uri, uriLength)); });
    }
    STDMETHODIMP endPrefixMapping(const wchar_t* prefix, int prefixLength) override
    {
        return Forward([&] { m_builder.EndPrefix(Narrow(prefix, prefixLength)); });
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
            m_builder.StartElement({Narrow(uri, uriLength), Narrow(local, localLength)},
                                   ReadAttributes(*attributes));
        });
    }
    STDMETHODIMP endElement(const wchar_t*, int, const wchar_t*, int, const wchar_t*, int) override
    {
        return Forward([&] { m_builder.EndElement(); });
    }
    STDMETHODIMP characters(const wchar_t* text, int length) override
    {
        return Forward([&] { m_builder.AddText(Narrow(text, length)); });
    }
    STDMETHODIMP ignorableWhitespace(const wchar_t*, int) override { return S_OK; }
    STDMETHODIMP processingInstruction(const wchar_t*, int, const wchar_t*, int) override { return S_OK; }
    STDMETHODIMP skippedEntity(const wchar_t*, int) override { return S_OK; }

private:
    template <typename Action>
    HRESULT Forward(Action&& action) noexcept
    {
        try
        {
            action();
            return S_OK;
        }
        catch (const FormatError& error)
        {
            m_failure = Locate(error);
        }
        catch (...)
        {
            m_failure = std::current_exception();
        }
        return E_FAIL;
    }

    std::exception_ptr Locate(const FormatError& error) const noexcept
    {
        try
        {
            return std::make_exception_ptr(
                FormatError(FormatString("line %d: %s", LineOf(m_pLocator), error.what())));
        }
        catch (...)
        {
            return std::current_exception();
        }
    }

    TreeBuilder& m_builder;
    // Lent by the reader for the time of the parse; holding it would close a circle of references.
    ISAXLocator* m_pLocator = nullptr;
    std::exception_ptr m_failure;
};

/// Keeps what the reader says against a document that is not well-formed.
class ErrorHandler : public ComObject<ISAXErrorHandler>
{
public:
    const std::string& GetReason() const { return m_reason; }

    STDMETHODIMP error(ISAXLocator*, const wchar_t*, HRESULT) override { return S_OK; }
    STDMETHODIMP ignorableWarning(ISAXLocator*, const wchar_t*, HRESULT) override { return S_OK; }
    STDMETHODIMP fatalError(ISAXLocator* locator, const wchar_t* message, HRESULT) override
    {
        return base::exception::AtBoundary([&] {
            std::string text = message == nullptr ? "" : ToUtf8(message);
            text.erase(text.find_last_not_of("\r\n") + 1);
            m_reason = FormatString("line %d: %s", LineOf(locator), text.c_str());
            return S_OK;
        });
    }

private:
    std::string m_reason = "the document is not well-formed";
};

ComPtr<IStream> ToStream(std::string_view bytes)
{
    ComPtr<IStream> stream;
    ThrowIfFailed(CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive()));
    WriteAll(*stream, bytes);
    ThrowIfFailed(stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr));
    return stream;
}
} // namespace

Document ReadDocument(std::string_view bytes, Kind root)
{
    TreeBuilder builder(root);
    const auto contentHandler = MakeCom<ContentHandler>(builder);
    const auto errorHandler = MakeCom<ErrorHandler>();
    ComPtr<ISAXXMLReader> reader;
    ThrowIfFailed(CoCreateInstance(platform::kSaxXmlReader60,
                                   nullptr,
                                   CLSCTX_INPROC_SERVER,
                                   __uuidof(ISAXXMLReader),
                                   reader.ReceiveUntyped()));
    // Wine takes this and reads on, but knows none of the entities that a document type declares.
    ThrowIfFailed(reader->putFeature(L"prohibit-dtd", VARIANT_TRUE));
    ThrowIfFailed(reader->putContentHandler(contentHandler.Get()));
    ThrowIfFailed(reader->putErrorHandler(errorHandler.Get()));

    const ComPtr<IStream> stream = ToStream(bytes);
    VARIANT source;
    VariantInit(&source);
    V_VT(&source) = VT_UNKNOWN;
    V_UNKNOWN(&source) = stream.Get();
    const HRESULT parsed = reader->parse(source);
    contentHandler->RethrowFailure();
    if (parsed == E_OUTOFMEMORY)
    {
        ThrowIfFailed(parsed);
    }
    if (FAILED(parsed))
    {
        throw FormatError(errorHandler->GetReason());
    }
    return builder.Take();
}
} // namespace host::ticketservice
