#include "base/xps/printschema/printablemediasizedata.h"

#include <stdexcept>

#include "base/logging/failure.h"
#include "base/xps/printschema/keywordlists.h"

namespace base::xps::printschema
{
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
    const auto read = [&](const wchar_t* property, std::int32_t& micrometres) {
        return HasSucceeded(ReadInteger(handler,
                                        &PrintSchemaHandler::GetPropertyInteger,
                                        feature,
                                        {NamespaceId::Private, property},
                                        micrometres));
    };
    const auto readLimit = [&](const wchar_t* widthProperty, const wchar_t* heightProperty) {
        MediaSize size;
        const bool isComplete =
            read(widthProperty, size.widthMicrometres) && read(heightProperty, size.heightMicrometres);
        return isComplete ? size : MediaSize{};
    };
    m_limits.minimum = readLimit(L"MinWidth", L"MinHeight");
    m_limits.maximum = readLimit(L"MaxWidth", L"MaxHeight");
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
