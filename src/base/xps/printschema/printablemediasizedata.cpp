#include "base/xps/printschema/printablemediasizedata.h"

#include <stdexcept>

#include "base/logging/failure.h"
#include "base/xps/printschema/keywordlists.h"

namespace base::xps::printschema
{
namespace
{
bool ReadLength(const PrintSchemaHandler& handler,
                const Qname& feature,
                const wchar_t* property,
                std::int32_t& micrometres)
{
    return HasSucceeded(handler.GetPropertyInteger(feature.localName.c_str(),
                                                   property,
                                                   &micrometres,
                                                   feature.namespaceId,
                                                   NamespaceId::Private,
                                                   NamespaceId::Private));
}

MediaSize ReadLimit(const PrintSchemaHandler& handler,
                    const Qname& feature,
                    const wchar_t* widthProperty,
                    const wchar_t* heightProperty)
{
    MediaSize size;
    const bool isComplete = ReadLength(handler, feature, widthProperty, size.widthMicrometres) &&
                            ReadLength(handler, feature, heightProperty, size.heightMicrometres);
    return isComplete ? size : MediaSize{};
}
} // namespace

PrintableMediaSizeData::PrintableMediaSizeData() noexcept : ThreeScopeFeature(0, 0) {}

const SchemaBase& PrintableMediaSizeData::GetFeatureSchema() const
{
    return SharedList<PrintableMediaSizeFeatureSchema>();
}

const SchemaBase& PrintableMediaSizeData::GetOptionSchema() const
{
    return SharedList<PrintableMediaSizeOptionSchema>();
}

void PrintableMediaSizeData::ReadParameters(PrintSchemaHandler handler, const Qname& feature)
{
    m_limits.minimum = ReadLimit(handler, feature, L"MinWidth", L"MinHeight");
    m_limits.maximum = ReadLimit(handler, feature, L"MaxWidth", L"MaxHeight");
    if (m_limits.minimum.widthMicrometres > m_limits.maximum.widthMicrometres ||
        m_limits.minimum.heightMicrometres > m_limits.maximum.heightMicrometres)
    {
        exception::Throw<std::logic_error>("printticket is in invalid state.");
    }
}

void PrintableMediaSizeData::WriteParameters(PrintSchemaHandler handler, IXMLDOMElement* option, Scope) const
{
    const auto write = [&](const wchar_t* property, std::int32_t micrometres) {
        WriteInteger(handler, option, {NamespaceId::Private, property}, micrometres);
    };
    write(L"MinWidth", m_limits.minimum.widthMicrometres);
    write(L"MinHeight", m_limits.minimum.heightMicrometres);
    write(L"MaxWidth", m_limits.maximum.widthMicrometres);
    write(L"MaxHeight", m_limits.maximum.heightMicrometres);
}
} // namespace base::xps::printschema
