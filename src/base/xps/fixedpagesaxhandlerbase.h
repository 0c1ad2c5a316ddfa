#pragma once

#include <map>
#include <string>

#include "base/utility/comobject.h"
#include "base/xps/page/gdimatrix.h"
#include "base/xps/page/pagebox.h"
#include "platform/msxml6.h"

namespace base::xps
{
/// Attribute values by qualified name, in the order of plain character comparison: also the order in which
/// they are written back.
using AttributeMap = std::map<std::wstring, std::wstring>;

/// A SAX content handler that answers S_OK to everything, and what rewriting a FixedPage needs: attributes
/// and boxes, read and written.
///
/// Serves one parse on one thread. The callbacks of derived handlers may throw: they are never given to a
/// reader but through ParseMarkup.
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
    /// Replaces the map's content. A failing call of the reader ends it silently, with what came before.
    static void ReadAttributes(ISAXAttributes& attributes, AttributeMap& map);

    /// Appends the markup of all attributes in UTF-8, a blank before each. Only UnicodeString is escaped;
    /// every other value is written as the parser delivered it.
    static void BuildAttributeText(const AttributeMap& map, std::string& text);

    /// The same in document order, straight from the reader. Appends nothing when a call of the reader fails.
    static void BuildAttributeTextFromSax(ISAXAttributes& attributes, std::string& text);

    /// Gives the map the Width and Height of the transformed page. Throws std::logic_error when either is
    /// missing.
    static void RewritePageSize(GdiMatrix& matrix, AttributeMap& map);

    /// Transforms BleedBox in its place. XPS wants it to hold the page: one is dropped that cannot be read,
    /// whose corner lies right of the origin or below it, or whose transformed size is smaller than `page`,
    /// the page before the transform.
    static void RewriteBleedBox(const PageBox& page, GdiMatrix& matrix, AttributeMap& map);

    /// Transforms ContentBox in its place. XPS wants it within the page: one is dropped that cannot be read,
    /// whose corner lies left of the origin or above it, or whose transformed size is larger than `page`, the
    /// page before the transform.
    static void RewriteContentBox(const PageBox& page, GdiMatrix& matrix, AttributeMap& map);
};
} // namespace base::xps
