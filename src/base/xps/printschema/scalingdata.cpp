#include "base/xps/printschema/scalingdata.h"

#include <stdexcept>

#include "base/logging/errors.h"
#include "base/xps/printschema/document/dom.h"
#include "base/xps/printschema/keywordlists.h"

namespace base::xps::printschema
{
using exception::ThrowIfFailed;
using utility::ComPtr;

namespace
{
bool IsCustom(std::int32_t optionId)
{
    return optionId == ScalingData::kCustom || optionId == ScalingData::kCustomSquare;
}
} // namespace

ScalingData::ScalingData() noexcept : SingleScopeFeature(0, kFitMediaSizeToMediaSize) {}

const SchemaBase& ScalingData::GetFeatureSchema() const
{
    return SharedList<PageScalingFeatureSchema>();
}

const SchemaBase& ScalingData::GetOptionSchema() const
{
    return SharedList<PageScalingOptionSchema>();
}

void ScalingData::ReadParameters(PrintSchemaHandler handler, const Qname& feature)
{
    const auto read = [&](const wchar_t* property, std::int32_t& value) {
        ThrowIfFailed(ReadInteger(handler,
                                  &PrintSchemaHandler::GetScoredPropertyInteger,
                                  feature,
                                  {NamespaceId::Keywords, property},
                                  value));
    };
    PageScale scale;
    if (IsCustom(GetOptionId()))
    {
        read(L"OffsetWidth", scale.offsetWidthMicrometres);
        read(L"OffsetHeight", scale.offsetHeightMicrometres);
        if (GetOptionId() == kCustom)
        {
            read(L"ScaleWidth", scale.widthPercent);
            read(L"ScaleHeight", scale.heightPercent);
        }
        else
        {
            read(L"Scale", scale.widthPercent);
            scale.heightPercent = scale.widthPercent;
        }
    }
    m_scale = scale;
}

void ScalingData::WriteParameters(PrintSchemaHandler handler, IXMLDOMElement* option, Scope scope) const
{
    if (!IsCustom(GetOptionId()))
    {
        return;
    }
    WriteParameter(handler, option, scope, L"OffsetWidth", m_scale.offsetWidthMicrometres);
    WriteParameter(handler, option, scope, L"OffsetHeight", m_scale.offsetHeightMicrometres);
    if (GetOptionId() == kCustom)
    {
        WriteParameter(handler, option, scope, L"ScaleWidth", m_scale.widthPercent);
        WriteParameter(handler, option, scope, L"ScaleHeight", m_scale.heightPercent);
        return;
    }
    if (m_scale.widthPercent != m_scale.heightPercent)
    {
        exception::Throw<std::logic_error>("CustomSquare needs same values of Width and Height.");
    }
    WriteParameter(handler, option, scope, L"Scale", m_scale.widthPercent);
}

void ScalingData::WriteParameter(const PrintSchemaHandler& handler,
                                 IXMLDOMElement* option,
                                 Scope scope,
                                 const wchar_t* property,
                                 std::int32_t value) const
{
    // The Print Schema names a parameter by feature and property, as PageScalingOffsetWidth.
    const std::wstring parameter = GetFeatureQname(scope).localName + property;
    ComPtr<IXMLDOMElement> parameterRef;
    ComPtr<IXMLDOMElement> parameterInit;
    ThrowIfFailed(handler.CreateIntegerParameter(
        parameter.c_str(), value, parameterRef.Receive(), parameterInit.Receive()));
    AppendNew(option, [&](IXMLDOMElement** created) {
        return handler.CreateScoredPropertyWithChild(property, parameterRef.Get(), created);
    });
    ThrowIfFailed(handler.AppendToElement(L"PrintTicket", parameterInit.Get()));
}
} // namespace base::xps::printschema
