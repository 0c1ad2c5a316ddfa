#pragma once

#include <string>

#include "base/logging/failure.h"
#include "base/utility/comptr.h"
#include "platform/msxml6.h"

/// DOM documents of MSXML 6. Failures are thrown. COM must be initialised on the calling thread.
namespace base::xml::XmlUtility
{
/// Creates an empty document that loads synchronously, without validation or external entities, and refuses
/// document types.
utility::ComPtr<IXMLDOMDocument2> CreateDocument(DWORD classContext = CLSCTX_INPROC_SERVER);

/// Throws HresultError with E_FAIL if `loaded`, the result of loading, is false, or if the document has a
/// document type.
void RequireLoaded(IXMLDOMDocument2& document,
                   VARIANT_BOOL loaded,
                   exception::SourceLocation where = exception::SourceLocation::Current());

/// Checks markup before a SAX reader reads it. Throws HresultError: E_FAIL for a document type or other text
/// before the root element, or the stream's failure. Restores the stream's position.
void RefuseDocumentType(IStream& markup);

/// Throws HresultError: the parser's HRESULT, or E_FAIL if the parser only reports that nothing was loaded.
utility::ComPtr<IXMLDOMDocument2> LoadDocumentFromFile(const std::wstring& path);

/// The same for markup in memory; an encoding in its declaration is ignored.
utility::ComPtr<IXMLDOMDocument2> LoadDocumentFromString(const std::wstring& markup);

/// Writes a document in UTF-8. Removes an XML declaration that names another encoding from the document.
void WriteDocument(IXMLDOMDocument2& document, IStream& target);

/// Writes a document into a memory stream, positioned at its start. Throws std::invalid_argument for null.
utility::ComPtr<IStream> SaveDocument(IXMLDOMDocument2* document);
} // namespace base::xml::XmlUtility
