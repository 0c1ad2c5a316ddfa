#include "base/xps/printschema/printticketfunctionoption.h"

#include <optional>
#include <utility>

#include "base/logging/errors.h"
#include "base/logging/log.h"
#include "base/xps/printschema/document/dom.h"

namespace base::xps::printschema
{
using exception::Throw;
using exception::ThrowIfFailed;
using utility::ComPtr;

namespace
{
struct SelectedOption
{
    Qname feature;
    Qname option;
};

std::optional<SelectedOption> FindSelectedOption(const PrintSchemaHandler& handler,
                                                 const SchemaBase& features,
                                                 const SchemaBase& options)
{
    SelectedOption selected;
    const HRESULT hr = handler.FindFirstOption(
        features.GetQnames(), options.GetNamespaces(), &selected.feature, &selected.option);
    if (hr == kNotFound)
    {
        return std::nullopt;
    }
    ThrowIfFailed(hr);
    return selected;
}
} // namespace

// NOLINTBEGIN(performance-unnecessary-value-param): every operation takes its own handler, which shares the
// document.
bool PrintTicketFunctionOption::Exists(PrintSchemaHandler handler) const
{
    return FindSelectedOption(handler, GetFeatureSchema(), GetOptionSchema()).has_value();
}

void PrintTicketFunctionOption::Read(PrintSchemaHandler handler)
{
    const auto selected = FindSelectedOption(handler, GetFeatureSchema(), GetOptionSchema());
    if (!selected)
    {
        return;
    }
    const std::int32_t optionId = GetOptionSchema().IndexOf(selected->option);
    if (optionId == -1)
    {
        return;
    }
    SetFeatureIdByQname(selected->feature.namespaceId, selected->feature.localName);
    SetOptionId(optionId);
    ReadParameters(std::move(handler), selected->feature);
}

void PrintTicketFunctionOption::Write(PrintSchemaHandler handler, Scope scope) const
{
    const Qname featureName = GetFeatureQname(scope);
    const Qname optionName = GetOptionQname();
    ComPtr<IXMLDOMElement> feature;
    ComPtr<IXMLDOMElement> option;
    ThrowIfFailed(handler.CreateFeatureWithNamedOption(featureName.localName.c_str(),
                                                       optionName.localName.c_str(),
                                                       feature.Receive(),
                                                       option.Receive(),
                                                       featureName.namespaceId,
                                                       optionName.namespaceId));
    WriteParameters(handler, option.Get(), scope);
    ThrowIfFailed(handler.AppendToElement(L"PrintTicket", feature.Get()));
}

void PrintTicketFunctionOption::Remove(PrintSchemaHandler handler) const
{
    for (const Qname& name : GetFeatureSchema().GetQnames())
    {
        if (!HasSucceeded(handler.RemoveFeature(name.localName.c_str(), name.namespaceId)))
        {
            return;
        }
    }
}

void PrintTicketFunctionOption::Write(PrintSchemaHandler handler) const
{
    Write(std::move(handler), GetScope());
}

Qname PrintTicketFunctionOption::GetFeatureQname() const
{
    return GetFeatureSchema().GetQname(static_cast<std::uint32_t>(GetFeatureId()));
}

Qname PrintTicketFunctionOption::GetFeatureQname(Scope scope) const
{
    return GetFeatureSchema().GetQname(static_cast<std::uint32_t>(GetFeatureIdOfScope(scope)));
}

Qname PrintTicketFunctionOption::GetOptionQname() const
{
    return GetOptionSchema().GetQname(static_cast<std::uint32_t>(GetOptionId()));
}

std::int32_t PrintTicketFunctionOption::GetFeatureId() const
{
    if (m_featureId < 0)
    {
        Throw<exception::InvalidFeatureIdError>("feature id has not set yet.");
    }
    return m_featureId;
}

std::int32_t PrintTicketFunctionOption::GetOptionId() const
{
    if (m_optionId < 0 || m_featureId < 0)
    {
        Throw<exception::InvalidOptionIdError>("option id has not set yet or invalid feature id has set.");
    }
    return m_optionId;
}

void PrintTicketFunctionOption::SetFeatureId(std::int32_t id)
{
    m_featureId = id;
}

void PrintTicketFunctionOption::SetOptionId(std::int32_t id)
{
    m_optionId = id;
}

void PrintTicketFunctionOption::ReadParameters(PrintSchemaHandler, const Qname&) {}

void PrintTicketFunctionOption::WriteParameters(PrintSchemaHandler, IXMLDOMElement*, Scope) const {}
// NOLINTEND(performance-unnecessary-value-param)

void PrintTicketFunctionOption::SetFeatureIdByQname(NamespaceId namespaceId, const std::wstring& localName)
{
    SetFeatureId(GetFeatureSchema().IndexOf(namespaceId, localName));
}

HRESULT PrintTicketFunctionOption::ReadInteger(const PrintSchemaHandler& handler,
                                               decltype(&PrintSchemaHandler::GetPropertyInteger) read,
                                               const Qname& feature,
                                               const Qname& property,
                                               std::int32_t& value)
{
    return (handler.*read)(feature.localName.c_str(),
                           property.localName.c_str(),
                           &value,
                           feature.namespaceId,
                           property.namespaceId,
                           property.namespaceId);
}

void PrintTicketFunctionOption::WriteInteger(const PrintSchemaHandler& handler,
                                             IXMLDOMElement* option,
                                             const Qname& name,
                                             std::int32_t value)
{
    const std::wstring text = logging::FormatWString(L"%d", value);
    AppendNew(option, [&](IXMLDOMElement** created) {
        return handler.CreatePropertyWithValue(
            name.localName.c_str(), L"integer", text.c_str(), created, name.namespaceId);
    });
}

std::int32_t PrintTicketFunctionOption::FeatureIdOrNone() const
{
    try
    {
        return GetFeatureId();
    }
    catch (const exception::InvalidFeatureIdError&)
    {
        return -1;
    }
}

Scope SingleScopeFeature::GetScope() const
{
    return FeatureIdOrNone() == 0 ? Scope::Page : Scope::None;
}

std::int32_t SingleScopeFeature::GetFeatureIdOfScope(Scope scope) const
{
    switch (scope)
    {
    case Scope::Job:
    case Scope::Document:
    case Scope::Page:
        return 0;
    case Scope::None:
        break;
    }
    throw exception::NotSupportedException();
}

Scope ThreeScopeFeature::GetScope() const
{
    switch (FeatureIdOrNone())
    {
    case 0:
        return Scope::Job;
    case 1:
        return Scope::Document;
    case 2:
        return Scope::Page;
    default:
        return Scope::None;
    }
}

std::int32_t ThreeScopeFeature::GetFeatureIdOfScope(Scope scope) const
{
    switch (scope)
    {
    case Scope::Job:
        return 0;
    case Scope::Document:
        return 1;
    case Scope::Page:
        return 2;
    case Scope::None:
        break;
    }
    throw exception::NotSupportedException();
}
} // namespace base::xps::printschema
