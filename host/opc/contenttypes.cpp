#include "host/opc/contenttypes.h"

#include <algorithm>

#include "host/xml/reader.h"
#include "host/xml/writer.h"

namespace host::opc
{
namespace
{
constexpr std::string_view kNamespace = "http://schemas.openxmlformats.org/package/2006/content-types";

void WriteEntry(xml::Writer& writer,
                std::string_view element,
                std::string_view key,
                std::string_view keyValue,
                std::string_view contentType)
{
    writer.Start(element);
    writer.Attribute(key, keyValue);
    writer.Attribute("ContentType", contentType);
    writer.End();
}
} // namespace

ContentTypes ContentTypes::Parse(std::string_view markup)
{
    ContentTypes types;
    xml::ReadElements(markup, [&](const xml::Element& element) {
        const std::string* const contentType = element.Find("ContentType");
        if (element.namespaceUri != kNamespace || contentType == nullptr)
        {
            return;
        }
        const std::string* const extension = element.Find("Extension");
        const std::string* const name = element.Find("PartName");
        if (element.localName == "Default" && extension != nullptr)
        {
            types.m_defaults.push_back({*extension, *contentType});
        }
        else if (element.localName == "Override" && name != nullptr)
        {
            if (const auto part = PartName::FromItem(*name))
            {
                types.m_overrides.emplace(*part, *contentType);
            }
        }
    });
    return types;
}

std::string_view ContentTypes::Find(const PartName& part) const
{
    const auto byName = m_overrides.find(part);
    if (byName != m_overrides.end())
    {
        return byName->second;
    }
    const Default* const byExtension = FindDefault(part.Extension());
    return byExtension != nullptr ? std::string_view(byExtension->contentType) : std::string_view();
}

void ContentTypes::Set(const PartName& part, std::string_view contentType)
{
    m_overrides.erase(part);
    const Default* const byExtension = FindDefault(part.Extension());
    if (byExtension == nullptr && !part.Extension().empty())
    {
        m_defaults.push_back({std::string(part.Extension()), std::string(contentType)});
    }
    else if (byExtension == nullptr || byExtension->contentType != contentType)
    {
        m_overrides.emplace(part, contentType);
    }
}

std::map<std::string, std::string> ContentTypes::List() const
{
    std::map<std::string, std::string> list;
    for (const Default& entry : m_defaults)
    {
        list.emplace("*." + entry.extension, entry.contentType);
    }
    for (const auto& [part, contentType] : m_overrides)
    {
        list.emplace(part.Text(), contentType);
    }
    return list;
}

std::string ContentTypes::Serialize() const
{
    xml::Writer writer;
    writer.Start("Types");
    writer.Attribute("xmlns", kNamespace);
    for (const Default& entry : m_defaults)
    {
        WriteEntry(writer, "Default", "Extension", entry.extension, entry.contentType);
    }
    for (const auto& [part, contentType] : m_overrides)
    {
        WriteEntry(writer, "Override", "PartName", part.Text(), contentType);
    }
    writer.End();
    return writer.Take();
}

const ContentTypes::Default* ContentTypes::FindDefault(std::string_view extension) const
{
    const std::string wanted = ToLowerAscii(extension);
    const auto found = std::find_if(m_defaults.begin(), m_defaults.end(), [&](const Default& entry) {
        return ToLowerAscii(entry.extension) == wanted;
    });
    return found == m_defaults.end() ? nullptr : &*found;
}
} // namespace host::opc
