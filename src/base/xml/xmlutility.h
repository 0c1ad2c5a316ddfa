#pragma once

#include <string>

#include "base/utility/comptr.h"
#include "platform/msxml6.h"

/// DOM documents of MSXML 6. Every failure is thrown; the caller owns what a function returns. COM must be
/// initialised on the calling thread.
namespace base::xml::XmlUtility
{
/// A new empty document that loads synchronously, neither validates nor fetches anything, and refuses
/// document types.
utility::ComPtr<IXMLDOMDocument2> CreateDocument(DWORD classContext = CLSCTX_INPROC_SERVER);

/// Throws HresultError: with the parser's HRESULT, or E_FAIL where it only reports that nothing was loaded.
utility::ComPtr<IXMLDOMDocument2> LoadDocumentFromFile(const std::wstring& path);

/// The same for markup; an encoding that its declaration names plays no part.
utility::ComPtr<IXMLDOMDocument2> LoadDocumentFromString(const std::wstring& markup);

/// The document's serialised form in memory, positioned at its start. Throws std::invalid_argument for null.
utility::ComPtr<IStream> SaveDocument(IXMLDOMDocument2* document);
} // namespace base::xml::XmlUtility
