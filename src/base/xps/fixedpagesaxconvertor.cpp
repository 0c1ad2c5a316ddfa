#include "base/xps/fixedpagesaxconvertor.h"

#include <string>

#include "base/utility/utf8.h"
#include "base/xps/markuptext.h"
#include "base/xps/pagetransform.h"

namespace base::xps
{
using utility::ToUtf8;

FixedPageSaxConvertor::FixedPageSaxConvertor(std::ostream& output, float angleDegrees, float scale)
    : m_pOutput(&output), m_angleDegrees(angleDegrees), m_scale(scale)
{
}

FixedPageSaxConvertor::~FixedPageSaxConvertor()
{
    // A parse that broke off leaves elements open; they close from the inside out.
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
    const std::wstring local(localName, static_cast<std::size_t>(localNameLength));
    std::wstring tag(qualifiedName, static_cast<std::size_t>(qualifiedNameLength));
    auto writer = std::make_unique<ElementTagWriter>(*m_pOutput);
    try
    {
        if (local == L"FixedPage")
        {
            WritePage(tag, *attributes, *writer);
        }
        else
        {
            if (local == L"FixedPage.Resources")
            {
                // They were the page's first child and become the first child of the canvas.
                tag = L"Canvas.Resources";
            }
            writer->WriteStartTag(ToUtf8(tag + BuildAttributeTextFromSax(*attributes)));
        }
        m_openElements.push(std::move(writer));
    }
    catch (...)
    {
        if (writer)
        {
            writer->DropEndTags();
        }
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

void FixedPageSaxConvertor::WritePage(const std::wstring& qualifiedName,
                                      ISAXAttributes& attributes,
                                      ElementTagWriter& writer)
{
    AttributeMap map;
    ReadAttributes(attributes, map);
    // A size that is missing comes into the map by this and counts as 0: such a page is written, not refused.
    const auto height = static_cast<float>(ToNumber(map[L"Height"]));
    const auto width = static_cast<float>(ToNumber(map[L"Width"]));
    const PageBox page{0.0F, 0.0F, width, height};

    GdiMatrix matrix;
    ComputePageTransform(page, m_angleDegrees, m_scale, matrix);
    RewritePageSize(matrix, map);
    RewriteBleedBox(page, matrix, map);
    RewriteContentBox(page, matrix, map);

    writer.WriteStartTag(ToUtf8(qualifiedName + BuildAttributeText(map)));
    writer.WriteStartTag(ToUtf8(L"Canvas " + FormatRenderTransform(matrix)));
}
} // namespace base::xps
