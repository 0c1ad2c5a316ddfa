#include "base/xps/fixedpagesaxhandlerbase.h"

#include <stdexcept>
#include <string_view>

#include "base/logging/failure.h"
#include "base/utility/utf8.h"
#include "base/xps/page/markuptext.h"
#include "base/xps/page/pagetransform.h"

namespace base::xps
{
using utility::AppendUtf8;

namespace
{
constexpr const wchar_t* kWidth = L"Width";
constexpr const wchar_t* kHeight = L"Height";
constexpr std::wstring_view kUnicodeString = L"UnicodeString";

/// One attribute of the reader; the views are valid during the callback.
struct SaxAttribute
{
    std::wstring_view localName;
    std::wstring_view qualifiedName;
    std::wstring_view value;
};

std::wstring_view View(const wchar_t* text, int length)
{
    return text == nullptr ? std::wstring_view() : std::wstring_view(text, static_cast<std::size_t>(length));
}

[[nodiscard]] HRESULT ReadAttribute(ISAXAttributes& attributes, int index, SaxAttribute& attribute)
{
    const wchar_t* uri = nullptr;
    const wchar_t* localName = nullptr;
    const wchar_t* qualifiedName = nullptr;
    int uriLength = 0;
    int localNameLength = 0;
    int qualifiedNameLength = 0;
    const HRESULT named = attributes.getName(
        index, &uri, &uriLength, &localName, &localNameLength, &qualifiedName, &qualifiedNameLength);
    if (FAILED(named))
    {
        return named;
    }
    const wchar_t* value = nullptr;
    int valueLength = 0;
    const HRESULT valued = attributes.getValue(index, &value, &valueLength);
    attribute = {
        View(localName, localNameLength), View(qualifiedName, qualifiedNameLength), View(value, valueLength)};
    return valued;
}

void AppendAttribute(std::string& text,
                     std::wstring_view qualifiedName,
                     std::wstring_view value,
                     bool escapes)
{
    text += ' ';
    AppendUtf8(text, qualifiedName);
    text += '=';
    text += '"';
    const std::size_t start = text.size();
    AppendUtf8(text, value);
    if (escapes)
    {
        EscapeText(text, start);
    }
    text += '"';
}

float RequiredNumber(const AttributeMap& map, const wchar_t* name)
{
    const auto found = map.find(name);
    if (found == map.end())
    {
        exception::Throw<std::logic_error>("FixedPage Hegiht/Width attribute is required by XPS.");
    }
    return static_cast<float>(ToNumber(found->second));
}

bool CanHold(const PageBox& box, const PageBox& page)
{
    return !(box.Left > 0.0F) && !(box.Top > 0.0F) && !(box.Width() < page.Width()) &&
           !(box.Height() < page.Height());
}

bool CanLieWithin(const PageBox& box, const PageBox& page)
{
    return !(box.Left < 0.0F) && !(box.Top < 0.0F) && !(box.Width() > page.Width()) &&
           !(box.Height() > page.Height());
}

/// Transforms the size of the box attribute `name` and keeps its corner. Removes the attribute if it cannot
/// be read or if `isKept` returns false.
void RewriteBox(const wchar_t* name,
                bool (*isKept)(const PageBox& box, const PageBox& page),
                const PageBox& page,
                GdiMatrix& matrix,
                AttributeMap& map)
{
    const auto found = map.find(name);
    if (found == map.end())
    {
        return;
    }
    PageBox parsed;
    try
    {
        parsed = ParseBox(found->second);
    }
    catch (const std::invalid_argument&)
    {
        map.erase(found);
        return;
    }
    const PageBox box = MoveBox(TransformBox(parsed, matrix), parsed.Left, parsed.Top);
    if (!isKept(box, page))
    {
        map.erase(found);
        return;
    }
    // Writes the right and bottom edges although the markup's syntax has width and height (docs/surface.md).
    // They are equal if the corner is the origin.
    found->second = FormatBox(box.Left, box.Top, box.Right, box.Bottom);
}
} // namespace

STDMETHODIMP FixedPageSaxHandlerBase::putDocumentLocator(ISAXLocator*)
{
    return S_OK;
}

STDMETHODIMP FixedPageSaxHandlerBase::startDocument()
{
    return S_OK;
}

STDMETHODIMP FixedPageSaxHandlerBase::endDocument()
{
    return S_OK;
}

STDMETHODIMP FixedPageSaxHandlerBase::startPrefixMapping(const wchar_t*, int, const wchar_t*, int)
{
    return S_OK;
}

STDMETHODIMP FixedPageSaxHandlerBase::endPrefixMapping(const wchar_t*, int)
{
    return S_OK;
}

STDMETHODIMP FixedPageSaxHandlerBase::startElement(
    const wchar_t*, int, const wchar_t*, int, const wchar_t*, int, ISAXAttributes*)
{
    return S_OK;
}

STDMETHODIMP FixedPageSaxHandlerBase::endElement(
    const wchar_t*, int, const wchar_t*, int, const wchar_t*, int)
{
    return S_OK;
}

STDMETHODIMP FixedPageSaxHandlerBase::characters(const wchar_t*, int)
{
    return S_OK;
}

STDMETHODIMP FixedPageSaxHandlerBase::ignorableWhitespace(const wchar_t*, int)
{
    return S_OK;
}

STDMETHODIMP FixedPageSaxHandlerBase::processingInstruction(const wchar_t*, int, const wchar_t*, int)
{
    return S_OK;
}

STDMETHODIMP FixedPageSaxHandlerBase::skippedEntity(const wchar_t*, int)
{
    return S_OK;
}

void FixedPageSaxHandlerBase::ReadAttributes(ISAXAttributes& attributes, AttributeMap& map)
{
    map.clear();
    int count = 0;
    if (FAILED(attributes.getLength(&count)))
    {
        return;
    }
    for (int index = 0; index < count; ++index)
    {
        SaxAttribute attribute;
        if (FAILED(ReadAttribute(attributes, index, attribute)))
        {
            return;
        }
        map[std::wstring(attribute.qualifiedName)] = attribute.value;
    }
}

void FixedPageSaxHandlerBase::BuildAttributeText(const AttributeMap& map, std::string& text)
{
    for (const auto& [name, value] : map)
    {
        AppendAttribute(text, name, value, name == kUnicodeString);
    }
}

void FixedPageSaxHandlerBase::BuildAttributeTextFromSax(ISAXAttributes& attributes, std::string& text)
{
    int count = 0;
    if (FAILED(attributes.getLength(&count)))
    {
        return;
    }
    const std::size_t before = text.size();
    for (int index = 0; index < count; ++index)
    {
        SaxAttribute attribute;
        if (FAILED(ReadAttribute(attributes, index, attribute)))
        {
            text.resize(before);
            return;
        }
        AppendAttribute(
            text, attribute.qualifiedName, attribute.value, attribute.localName == kUnicodeString);
    }
}

void FixedPageSaxHandlerBase::RewritePageSize(GdiMatrix& matrix, AttributeMap& map)
{
    const float width = RequiredNumber(map, kWidth);
    const float height = RequiredNumber(map, kHeight);
    const PageBox turned = MoveBox(TransformBox({0.0F, 0.0F, width, height}, matrix), 0.0F, 0.0F);
    map[kWidth] = FormatNumber(static_cast<double>(turned.Width()));
    map[kHeight] = FormatNumber(static_cast<double>(turned.Height()));
}

void FixedPageSaxHandlerBase::RewriteBleedBox(const PageBox& page, GdiMatrix& matrix, AttributeMap& map)
{
    RewriteBox(L"BleedBox", CanHold, page, matrix, map);
}

void FixedPageSaxHandlerBase::RewriteContentBox(const PageBox& page, GdiMatrix& matrix, AttributeMap& map)
{
    RewriteBox(L"ContentBox", CanLieWithin, page, matrix, map);
}
} // namespace base::xps
