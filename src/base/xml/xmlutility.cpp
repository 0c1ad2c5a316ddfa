#include "base/xml/xmlutility.h"

#include <array>
#include <stdexcept>
#include <string_view>

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

namespace
{
/// The XML declaration of a document if it names another encoding than UTF-8; else null.
ComPtr<IXMLDOMNode> FindForeignDeclaration(IXMLDOMDocument2& document)
{
    ComPtr<IXMLDOMNode> first;
    ThrowIfFailed(document.get_firstChild(first.Receive()));
    DOMNodeType type = NODE_INVALID;
    if (first)
    {
        ThrowIfFailed(first->get_nodeType(&type));
    }
    if (type != NODE_PROCESSING_INSTRUCTION)
    {
        return {};
    }
    Bstr target;
    ThrowIfFailed(first->get_nodeName(target.Receive()));
    Bstr text;
    ThrowIfFailed(first->get_text(text.Receive()));
    const auto holds = [&text](std::wstring_view part) { return text.View().find(part) != text.View().npos; };
    const bool isForeign =
        target.View() == L"xml" && holds(L"encoding") && !holds(L"utf-8") && !holds(L"UTF-8");
    return isForeign ? first : ComPtr<IXMLDOMNode>();
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
    // A second line of defence. Not every parser has this property: failure is ignored.
    const Bstr prohibitDtd(L"ProhibitDTD");
    static_cast<void>(document->setProperty(prohibitDtd.Get(), Variant(true).Get()));
    return document;
}

void RequireLoaded(IXMLDOMDocument2& document, VARIANT_BOOL loaded, exception::SourceLocation where)
{
    // Malformed text gives S_FALSE or a failing HRESULT, by platform version; `loaded` is never true.
    if (loaded != VARIANT_TRUE)
    {
        ThrowIfFailed(E_FAIL, where);
    }
    // MSXML in Wine 8 and 10 loads a document type although it is prohibited; Windows has refused it already.
    ComPtr<IXMLDOMDocumentType> documentType;
    ThrowIfFailed(document.get_doctype(documentType.Receive()), where);
    if (documentType)
    {
        ThrowIfFailed(E_FAIL, where);
    }
}

// Works around MSXML in Wine 8 and 10, which accepts the feature "prohibit-dtd" and a lexical handler but
// neither refuses a document type nor reports it: the bytes are scanned instead.
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

void WriteDocument(IXMLDOMDocument2& document, IStream& target)
{
    // MSXML in Wine 8 and 10 writes UTF-8 whatever encoding the declaration names, which makes the document
    // unreadable (XmlUtility.SavesWhatWasInAnotherEncoding). XML without a declaration is UTF-8.
    if (const ComPtr<IXMLDOMNode> declaration = FindForeignDeclaration(document))
    {
        ComPtr<IXMLDOMNode> removed;
        ThrowIfFailed(document.removeChild(declaration.Get(), removed.Receive()));
    }
    const Variant stream(&target);
    ThrowIfFailed(document.save(stream.Get()));
}

ComPtr<IStream> SaveDocument(IXMLDOMDocument2* document)
{
    if (document == nullptr)
    {
        exception::Throw<std::invalid_argument>("pDom is null.");
    }
    ComPtr<IStream> stream;
    ThrowIfFailed(CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive()));
    WriteDocument(*document, *stream.Get());
    ThrowIfFailed(stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr));
    return stream;
}
} // namespace base::xml::XmlUtility
