#include "base/xps/printschema/inputbindata.h"

#include "base/xps/printschema/document/dom.h"
#include "base/xps/printschema/keywordlists.h"

namespace base::xps::printschema
{
using utility::Bstr;

namespace
{
constexpr std::int32_t kAutoSelect = 0;
constexpr std::int32_t kShortEdgeFirst = 1;
constexpr std::int32_t kNoFeedDirection = -1;
} // namespace

InputBinData::InputBinData() noexcept : ThreeScopeFeature(0, kAutoSelect), m_feedDirection(kShortEdgeFirst) {}

void InputBinData::SetFeedDirection(const wchar_t* name)
{
    m_feedDirection = SharedList<FeedDirectionSchema>().IndexOf(NamespaceId::Keywords, name);
}

const SchemaBase& InputBinData::GetFeatureSchema() const
{
    return SharedList<InputBinFeatureSchema>();
}

const SchemaBase& InputBinData::GetOptionSchema() const
{
    return SharedList<InputBinOptionSchema>();
}

void InputBinData::ReadParameters(PrintSchemaHandler handler, const Qname& feature)
{
    Bstr value;
    const HRESULT hr = handler.GetPropertyValue(feature.localName.c_str(),
                                                L"FeedDirection",
                                                value.Receive(),
                                                feature.namespaceId,
                                                NamespaceId::Keywords,
                                                NamespaceId::Keywords);
    if (HasSucceeded(hr))
    {
        SetFeedDirection(value.Get());
    }
}

void InputBinData::WriteParameters(PrintSchemaHandler handler, IXMLDOMElement* option, Scope) const
{
    if (m_feedDirection == kNoFeedDirection)
    {
        return;
    }
    const Qname& direction =
        SharedList<FeedDirectionSchema>().GetQname(static_cast<std::uint32_t>(m_feedDirection));
    const std::wstring value =
        std::wstring(handler.GetPrefix(direction.namespaceId).View()) + direction.localName;
    AppendNew(option, [&](IXMLDOMElement** created) {
        return handler.CreatePropertyWithValue(
            L"FeedDirection", L"QName", value.c_str(), created, NamespaceId::Keywords);
    });
}
} // namespace base::xps::printschema
