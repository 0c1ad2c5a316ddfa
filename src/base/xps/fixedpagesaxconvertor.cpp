#include "base/xps/fixedpagesaxconvertor.h"

#include <string>

#include "base/utility/utf8.h"
#include "base/xps/page/markuptext.h"
#include "base/xps/page/pagetransform.h"

namespace base::xps
{
FixedPageSaxConvertor::FixedPageSaxConvertor(std::ostream& output, float angleDegrees, float scale)
    : m_pOutput(&output), m_angleDegrees(angleDegrees), m_scale(scale)
{
}

FixedPageSaxConvertor::~FixedPageSaxConvertor()
{
    // A parse that failed leaves elements open; this writes their end tags, innermost first.
    while (!m_openElements.empty())
    {
        m_openElements.pop();
    }
}

STDMETHODIMP FixedPageSaxConvertor::startDocument()
{
    *m_pOutput << R"(<?xml version="1.0" encoding="utf-8"?>)";
    return S_OK;
}

STDMETHODIMP FixedPageSaxConvertor::startElement(const wchar_t*,
                                                 int,
                                                 const wchar_t* localName,
                                                 int localNameLength,
                                                 const wchar_t* qualifiedName,
                                                 int qualifiedNameLength,
                                                 ISAXAttributes* attributes)
{
    m_tag.clear();
    utility::AppendUtf8(m_tag, {qualifiedName, static_cast<std::size_t>(qualifiedNameLength)});
    ElementTagWriter& writer = m_openElements.emplace(*m_pOutput);
    try
    {
        WriteElement({localName, static_cast<std::size_t>(localNameLength)}, *attributes, writer);
    }
    catch (...)
    {
        writer.DropEndTags();
        m_openElements.pop();
        throw;
    }
    return S_OK;
}

STDMETHODIMP FixedPageSaxConvertor::endElement(const wchar_t*, int, const wchar_t*, int, const wchar_t*, int)
{
    if (m_openElements.empty())
    {
        return E_FAIL;
    }
    m_openElements.pop();
    return S_OK;
}

void FixedPageSaxConvertor::WriteElement(std::wstring_view localName,
                                         ISAXAttributes& attributes,
                                         ElementTagWriter& writer)
{
    if (localName == L"FixedPage")
    {
        WritePage(attributes, writer);
        return;
    }
    if (localName == L"FixedPage.Resources")
    {
        // The page's first child becomes the canvas's first child.
        m_tag = "Canvas.Resources";
    }
    BuildAttributeTextFromSax(attributes, m_tag);
    writer.WriteStartTag(m_tag);
}

void FixedPageSaxConvertor::WritePage(ISAXAttributes& attributes, ElementTagWriter& writer)
{
    AttributeMap map;
    ReadAttributes(attributes, map);
    // operator[] adds a missing size, which counts as 0: such a page is written (docs/surface.md).
    const auto height = static_cast<float>(ToNumber(map[L"Height"]));
    const auto width = static_cast<float>(ToNumber(map[L"Width"]));
    const PageBox page{0.0F, 0.0F, width, height};

    GdiMatrix matrix;
    ComputePageTransform(page, m_angleDegrees, m_scale, matrix);
    RewritePageSize(matrix, map);
    RewriteBleedBox(page, matrix, map);
    RewriteContentBox(page, matrix, map);

    BuildAttributeText(map, m_tag);
    writer.WriteStartTag(m_tag);
    m_tag = "Canvas " + utility::ToUtf8(FormatRenderTransform(matrix));
    writer.WriteStartTag(m_tag);
}
} // namespace base::xps
