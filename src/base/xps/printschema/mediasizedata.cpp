#include "base/xps/printschema/mediasizedata.h"

#include <stdexcept>

#include "base/logging/errors.h"
#include "base/xps/printschema/document/dom.h"
#include "base/xps/printschema/keywordlists.h"

namespace base::xps::printschema
{
using exception::Throw;

namespace
{
void WriteLength(const PrintSchemaHandler& handler,
                 IXMLDOMElement* option,
                 const wchar_t* property,
                 std::int32_t micrometres)
{
    AppendNew(option, [&](IXMLDOMElement** created) {
        return handler.CreateIntegerScoredProperty(property, micrometres, created);
    });
}
} // namespace

MediaSizeData::MediaSizeData() : SingleScopeFeature(0, MediaSizeTable::kIsoA4)
{
    MediaSizeData::SetOptionId(MediaSizeTable::kIsoA4);
}

MediaSizeData::MediaSizeData(const MediaSizeEntry& entry) : SingleScopeFeature(0, entry.value)
{
    MediaSizeData::SetOptionId(entry.value);
    SetSize(entry.size);
}

void MediaSizeData::SetSize(MediaSize size)
{
    const MediaSizeEntry& entry = MediaSizeTable::Shared().LookupBySize(size);
    if (MediaSizeTable::IsStandard(entry.value))
    {
        SingleScopeFeature::SetOptionId(entry.value);
    }
    else if (entry.value == MediaSizeTable::kOptionUnknown)
    {
        const std::int32_t current = GetOptionIdOrNone();
        if (current == -1 || MediaSizeTable::IsStandard(current))
        {
            SingleScopeFeature::SetOptionId(MediaSizeTable::kCustomMediaSize);
        }
    }
    m_size = size;
}

void MediaSizeData::SetFromEntry(const MediaSizeEntry& entry)
{
    SetFeatureId(0);
    SingleScopeFeature::SetOptionId(entry.value);
    SetSize(entry.size);
}

void MediaSizeData::Rotate()
{
    SetSize({m_size.heightMicrometres, m_size.widthMicrometres});
}

MediaSizeEntry MediaSizeData::GetMediaSizeEntry() const
{
    const MediaSizeTable& table = MediaSizeTable::Shared();
    MediaSizeEntry entry = table.Lookup(GetOptionId());
    if (MediaSizeTable::IsStandard(GetOptionId()))
    {
        return entry;
    }
    if (entry.value == MediaSizeTable::kOptionUnknown)
    {
        entry = table.Lookup(MediaSizeTable::kCustomMediaSize);
    }
    entry.size = m_size;
    return entry;
}

void MediaSizeData::SetOptionId(std::int32_t id)
{
    if (MediaSizeTable::IsStandard(id))
    {
        SetSize(MediaSizeTable::Shared().Lookup(id).size);
    }
    else
    {
        SingleScopeFeature::SetOptionId(id);
    }
}

const SchemaBase& MediaSizeData::GetFeatureSchema() const
{
    return SharedList<PageMediaSizeFeatureSchema>();
}

const SchemaBase& MediaSizeData::GetOptionSchema() const
{
    return SharedList<MediaSizeOptionSchema>();
}

void MediaSizeData::ReadParameters(PrintSchemaHandler handler, const Qname& feature)
{
    const auto read = [&](const wchar_t* property, std::int32_t& micrometres) {
        return HasSucceeded(ReadInteger(handler,
                                        &PrintSchemaHandler::GetScoredPropertyInteger,
                                        feature,
                                        {NamespaceId::Keywords, property},
                                        micrometres));
    };
    MediaSize size;
    if (read(L"MediaSizeHeight", size.heightMicrometres) && read(L"MediaSizeWidth", size.widthMicrometres))
    {
        m_size = size;
    }
    else if (MediaSizeTable::IsStandard(GetOptionId()))
    {
        m_size = MediaSizeTable::Shared().Lookup(GetOptionId()).size;
    }
    else
    {
        Throw<std::runtime_error>("Unexpected print ticket format. informations lack.");
    }
}

void MediaSizeData::WriteParameters(PrintSchemaHandler handler, IXMLDOMElement* option, Scope) const
{
    const std::int32_t optionId = GetOptionId();
    if (MediaSizeTable::IsStandard(optionId) && m_size != MediaSizeTable::Shared().Lookup(optionId).size)
    {
        Throw<std::runtime_error>("unexpected paper size was specified.");
    }
    WriteLength(handler, option, L"MediaSizeHeight", m_size.heightMicrometres);
    WriteLength(handler, option, L"MediaSizeWidth", m_size.widthMicrometres);
}

std::int32_t MediaSizeData::GetOptionIdOrNone() const
{
    try
    {
        return GetOptionId();
    }
    catch (const exception::InvalidOptionIdError&)
    {
        return -1;
    }
}

std::int32_t MediaSizeData::GetFeatureIdOrNone() const
{
    return FeatureIdOrNone();
}
} // namespace base::xps::printschema
