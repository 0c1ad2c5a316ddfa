#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/opc/partname.h"

namespace host::opc
{
/// The package's content types stream: types by extension, and by part name where that does not do.
class ContentTypes
{
public:
    /// Throws xml::MarkupError for text that is not well-formed.
    static ContentTypes Parse(std::string_view markup);

    /// Empty when the stream has no type for the part.
    std::string_view Find(const PartName& part) const;

    /// Gives a part its type: by its extension where that has the same type already or none yet, otherwise by
    /// its name.
    void Set(const PartName& part, std::string_view contentType);

    /// Drops what the stream says about this part by name.
    void Remove(const PartName& part) { m_overrides.erase(part); }

    /// The types by what they are for: "*.xml" for an extension, "/Metadata/job.xml" for a part.
    std::map<std::string, std::string> List() const;

    std::string Serialize() const;

private:
    struct Default
    {
        std::string extension;
        std::string contentType;
    };

    const Default* FindDefault(std::string_view extension) const;

    std::vector<Default> m_defaults;
    std::map<PartName, std::string> m_overrides;
};
} // namespace host::opc
