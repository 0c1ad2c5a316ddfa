#pragma once

#include <ostream>
#include <stack>
#include <string>

#include "base/xps/fixedpagesaxhandlerbase.h"
#include "base/xps/page/elementtagwriter.h"
#include "base/xps/page/gdiplusguard.h"

namespace base::xps
{
/// Writes a turned and scaled copy of the FixedPage whose SAX events it receives, in UTF-8 without
/// indentation. The page gets its new size and boxes, and its content goes into one Canvas with the
/// transform. Text, comments and processing instructions are not written: they mean nothing in an XPS page.
/// docs/surface.md lists what is fixed.
///
/// One object serves one parse. Callbacks throw; only the stream's state tells of a failed write.
class FixedPageSaxConvertor : public FixedPageSaxHandlerBase
{
public:
    /// `output` must outlive the convertor.
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
    // The current tag, in UTF-8. Reused for every element: one allocation per element would cost more than
    // the rest of the rewriting.
    std::string m_tag;
    float m_angleDegrees;
    float m_scale;
    // The last member, so that GDI+ is released first.
    GdiplusGuard m_gdiplus;
};
} // namespace base::xps
