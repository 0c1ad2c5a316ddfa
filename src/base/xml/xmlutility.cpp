#include "base/xml/xmlutility.h"

#include <stdexcept>

#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/utility/variant.h"

namespace base::xml::XmlUtility
{
using exception::ThrowIfFailed;
using utility::Bstr;
using utility::ComPtr;
using utility::Variant;

namespace
{
// Loading reports malformed text as S_FALSE or as a failing HRESULT, by platform version, and always as
// false.
void RequireLoaded(VARIANT_BOOL loaded,
                   exception::SourceLocation where = exception::SourceLocation::Current())
{
    if (loaded != VARIANT_TRUE)
    {
        ThrowIfFailed(E_FAIL, where);
    }
}
} // namespace

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

ComPtr<IXMLDOMDocument2> LoadDocumentFromFile(const std::wstring& path)
{
    ComPtr<IXMLDOMDocument2> document = CreateDocument();
    const Variant source{Bstr(path)};
    VARIANT_BOOL loaded = VARIANT_FALSE;
    ThrowIfFailed(document->load(source.Get(), &loaded));
    RequireLoaded(loaded);
    return document;
}

ComPtr<IXMLDOMDocument2> LoadDocumentFromString(const std::wstring& markup)
{
    ComPtr<IXMLDOMDocument2> document = CreateDocument();
    const Bstr source(markup);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    ThrowIfFailed(document->loadXML(source.Get(), &loaded));
    RequireLoaded(loaded);
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
