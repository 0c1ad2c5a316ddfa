#include "base/xml/xmlutility.h"

#include <array>
#include <stdexcept>

#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/utility/variant.h"
#include "base/xml/prologscanner.h"

namespace base::xml::XmlUtility
{
using exception::ThrowIfFailed;
using utility::Bstr;
using utility::ComPtr;
using utility::Variant;

ComPtr<IXMLDOMDocument2> CreateDocument(DWORD classContext)
{
    ComPtr<IXMLDOMDocument2> document;
    ThrowIfFailed(CoCreateInstance(platform::kDomDocument60,
                                   nullptr,
                                   classContext,
                                   __uuidof(IXMLDOMDocument2),
                                   document.ReceiveUntyped()));
    ThrowIfFailed(document->put_async(VARIANT_FALSE));
    ThrowIfFailed(document->put_validateOnParse(VARIANT_FALSE));
    ThrowIfFailed(document->put_resolveExternals(VARIANT_FALSE));
    // Refused document types are a second line of defence, which not every parser knows: its answer is let
    // go.
    const Bstr prohibitDtd(L"ProhibitDTD");
    static_cast<void>(document->setProperty(prohibitDtd.Get(), Variant(true).Get()));
    return document;
}

void RequireLoaded(IXMLDOMDocument2& document, VARIANT_BOOL loaded, exception::SourceLocation where)
{
    // Malformed text is S_FALSE or a failing HRESULT, by platform version, and never true.
    if (loaded != VARIANT_TRUE)
    {
        ThrowIfFailed(E_FAIL, where);
    }
    // MSXML in Wine 8 loads what it was told to prohibit.
    ComPtr<IXMLDOMDocumentType> documentType;
    ThrowIfFailed(document.get_doctype(documentType.Receive()), where);
    if (documentType)
    {
        ThrowIfFailed(E_FAIL, where);
    }
}

// MSXML in Wine 8 takes the feature "prohibit-dtd" and a lexical handler, and then neither refuses a document
// type nor tells the handler of one. So the bytes themselves are looked at.
void RefuseDocumentType(IStream& markup)
{
    ULARGE_INTEGER start{};
    ThrowIfFailed(markup.Seek(LARGE_INTEGER{}, STREAM_SEEK_CUR, &start));
    std::array<char, 4096> portion;
    PrologScanner prolog;
    PrologVerdict verdict = PrologVerdict::Undecided;
    ULONG count = 0;
    do
    {
        count = 0;
        ThrowIfFailed(markup.Read(portion.data(), static_cast<ULONG>(portion.size()), &count));
        verdict = prolog.Take({portion.data(), count});
    } while (verdict == PrologVerdict::Undecided && count != 0);
    if (verdict == PrologVerdict::Refused)
    {
        ThrowIfFailed(E_FAIL);
    }
    LARGE_INTEGER back{};
    back.QuadPart = static_cast<LONGLONG>(start.QuadPart);
    ThrowIfFailed(markup.Seek(back, STREAM_SEEK_SET, nullptr));
}

ComPtr<IXMLDOMDocument2> LoadDocumentFromFile(const std::wstring& path)
{
    ComPtr<IXMLDOMDocument2> document = CreateDocument();
    const Variant source{Bstr(path)};
    VARIANT_BOOL loaded = VARIANT_FALSE;
    ThrowIfFailed(document->load(source.Get(), &loaded));
    RequireLoaded(*document.Get(), loaded);
    return document;
}

ComPtr<IXMLDOMDocument2> LoadDocumentFromString(const std::wstring& markup)
{
    ComPtr<IXMLDOMDocument2> document = CreateDocument();
    const Bstr source(markup);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    ThrowIfFailed(document->loadXML(source.Get(), &loaded));
    RequireLoaded(*document.Get(), loaded);
    return document;
}

ComPtr<IStream> SaveDocument(IXMLDOMDocument2* document)
{
    if (document == nullptr)
    {
        exception::Throw<std::invalid_argument>("pDom is null.");
    }
    ComPtr<IStream> stream;
    ThrowIfFailed(CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive()));
    const Variant target(stream.Get());
    ThrowIfFailed(document->save(target.Get()));
    ThrowIfFailed(stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr));
    return stream;
}
} // namespace base::xml::XmlUtility
