#pragma once

#include <string>

#include "base/logging/failure.h"
#include "base/utility/comptr.h"
#include "platform/msxml6.h"

/// DOM documents of MSXML 6. Every failure is thrown; the caller owns what a function returns. COM must be
/// initialised on the calling thread.
namespace base::xml::XmlUtility
{
/// A new empty document that loads synchronously, neither validates nor fetches anything, and refuses
/// document types.
utility::ComPtr<IXMLDOMDocument2> CreateDocument(DWORD classContext = CLSCTX_INPROC_SERVER);

/// Throws HresultError with E_FAIL for a document that `load` reports as not loaded, and for one with a
/// document type.
void RequireLoaded(IXMLDOMDocument2& document,
                   VARIANT_BOOL loaded,
                   exception::SourceLocation where = exception::SourceLocation::Current());

/// For markup that goes to a SAX reader: throws HresultError with E_FAIL for a document type, or other text,
/// in front of the root element, or with the stream's own failure. The stream stays where it is.
void RefuseDocumentType(IStream& markup);

/// Throws HresultError: with the parser's HRESULT, or E_FAIL where it only reports that nothing was loaded.
utility::ComPtr<IXMLDOMDocument2> LoadDocumentFromFile(const std::wstring& path);

/// The same for markup; an encoding that its declaration names plays no part.
utility::ComPtr<IXMLDOMDocument2> LoadDocumentFromString(const std::wstring& markup);

/// Serialises a document in UTF-8. A declaration of another encoding is taken off the document.
void WriteDocument(IXMLDOMDocument2& document, IStream& target);

/// The document's serialised form in memory, positioned at its start. Throws std::invalid_argument for null.
utility::ComPtr<IStream> SaveDocument(IXMLDOMDocument2* document);
} // namespace base::xml::XmlUtility
