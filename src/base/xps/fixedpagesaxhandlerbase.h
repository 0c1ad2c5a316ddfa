#pragma once

#include <map>
#include <string>

#include "base/utility/comobject.h"
#include "base/xps/page/gdimatrix.h"
#include "base/xps/page/pagebox.h"
#include "platform/msxml6.h"

namespace base::xps
{
/// Attribute values by qualified name. They are written in the order of the map: by character codes.
using AttributeMap = std::map<std::wstring, std::wstring>;

/// A SAX content handler that returns S_OK from every callback, with functions that read and write the
/// attributes and boxes of a FixedPage. What it writes may look wrong and is fixed: docs/surface.md.
///
/// One object serves one parse on one thread. Callbacks of derived handlers may throw, so handlers are passed
/// to a reader through ParseMarkup only.
class FixedPageSaxHandlerBase : public utility::ComObject<ISAXContentHandler>
{
public:
    STDMETHODIMP putDocumentLocator(ISAXLocator* locator) override;
    STDMETHODIMP startDocument() override;
    STDMETHODIMP endDocument() override;
    STDMETHODIMP startPrefixMapping(const wchar_t* prefix,
                                    int prefixLength,
                                    const wchar_t* uri,
                                    int uriLength) override;
    STDMETHODIMP endPrefixMapping(const wchar_t* prefix, int prefixLength) override;
    STDMETHODIMP startElement(const wchar_t* uri,
                              int uriLength,
                              const wchar_t* localName,
                              int localNameLength,
                              const wchar_t* qualifiedName,
                              int qualifiedNameLength,
                              ISAXAttributes* attributes) override;
    STDMETHODIMP endElement(const wchar_t* uri,
                            int uriLength,
                            const wchar_t* localName,
                            int localNameLength,
                            const wchar_t* qualifiedName,
                            int qualifiedNameLength) override;
    STDMETHODIMP characters(const wchar_t* text, int length) override;
    STDMETHODIMP ignorableWhitespace(const wchar_t* text, int length) override;
    STDMETHODIMP processingInstruction(const wchar_t* target,
                                       int targetLength,
                                       const wchar_t* data,
                                       int dataLength) override;
    STDMETHODIMP skippedEntity(const wchar_t* name, int length) override;

protected:
    /// Replaces the map's content. If a call of the reader fails, the attributes read before it are kept and
    /// no failure is reported.
    static void ReadAttributes(ISAXAttributes& attributes, AttributeMap& map);

    /// Appends the markup of all attributes in UTF-8, a blank before each. Only UnicodeString is escaped; all
    /// other values are written as the parser delivered them.
    static void BuildAttributeText(const AttributeMap& map, std::string& text);

    /// The same in document order, from the reader. Appends nothing if a call of the reader fails.
    static void BuildAttributeTextFromSax(ISAXAttributes& attributes, std::string& text);

    /// Replaces Width and Height by those of the transformed page. Throws std::logic_error when either is
    /// missing.
    static void RewritePageSize(GdiMatrix& matrix, AttributeMap& map);

    /// Transforms the size of BleedBox. XPS requires that it contain the page, so it is removed if it cannot
    /// be read, if its corner lies right of or below the origin, or if its transformed size is smaller than
    /// `page`, the page before the transform.
    static void RewriteBleedBox(const PageBox& page, GdiMatrix& matrix, AttributeMap& map);

    /// Transforms the size of ContentBox. XPS requires that it lie within the page, so it is removed if it
    /// cannot be read, if its corner lies left of or above the origin, or if its transformed size is larger
    /// than `page`, the page before the transform.
    static void RewriteContentBox(const PageBox& page, GdiMatrix& matrix, AttributeMap& map);
};
} // namespace base::xps
