#pragma once

#include <ostream>
#include <stack>
#include <string>

#include "base/xps/fixedpagesaxhandlerbase.h"
#include "base/xps/page/elementtagwriter.h"
#include "base/xps/page/gdiplusguard.h"

namespace base::xps
{
/// Writes a turned and scaled copy of the FixedPage whose SAX events it receives, as UTF-8 bytes without any
/// layout: the page gets its new size and boxes, and its content goes into one Canvas that carries the
/// transform. Character data, comments and processing instructions are left out; XPS pages give them no
/// meaning.
///
/// Serves one parse of one page. Callbacks throw; a failed write shows in the stream's state only.
class FixedPageSaxConvertor : public FixedPageSaxHandlerBase
{
public:
    /// `output` outlives the convertor.
    FixedPageSaxConvertor(std::ostream& output, float angleDegrees, float scale);
    ~FixedPageSaxConvertor() override;

    STDMETHODIMP startDocument() override;
    STDMETHODIMP startElement(const wchar_t* uri,
                              int uriLength,
                              const wchar_t* localName,
                              int localNameLength,
                              const wchar_t* qualifiedName,
                              int qualifiedNameLength,
                              ISAXAttributes* attributes) override;
    /// E_FAIL when no element is open.
    STDMETHODIMP endElement(const wchar_t* uri,
                            int uriLength,
                            const wchar_t* localName,
                            int localNameLength,
                            const wchar_t* qualifiedName,
                            int qualifiedNameLength) override;

private:
    void WriteElement(std::wstring_view localName, ISAXAttributes& attributes, ElementTagWriter& writer);
    void WritePage(ISAXAttributes& attributes, ElementTagWriter& writer);

    std::ostream* m_pOutput;
    std::stack<ElementTagWriter> m_openElements;
    // The tag at hand, in UTF-8. Its memory lasts from element to element: to ask for it anew for each would
    // cost more than the rest of the rewriting.
    std::string m_tag;
    float m_angleDegrees;
    float m_scale;
    // Last, so that it comes after all that it serves and goes before it.
    GdiplusGuard m_gdiplus;
};
} // namespace base::xps
