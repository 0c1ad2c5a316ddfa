#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/opc/partname.h"

namespace host::opc
{
enum class TargetMode
{
    Internal,
    External
};

/// One relationship as its markup has it; the target is still a reference.
struct Relationship
{
    std::string id;
    std::string type;
    std::string target;
    TargetMode mode;
};

/// The relationships of one source, which is a part or the package itself.
class Relationships
{
public:
    /// None at all.
    explicit Relationships(PartName source) : m_source(std::move(source)) {}

    /// Throws xml::MarkupError for text that is not well-formed.
    static Relationships Parse(PartName source, std::string_view markup);

    const std::vector<Relationship>& All() const noexcept { return m_all; }

    /// The part that the first relationship of this type points at. One to something outside the package does
    /// not count. Empty when there is none; throws xml::MarkupError when its target is no part's name.
    std::optional<PartName> FindTarget(std::string_view type) const;

    /// Adds a relationship to a part of the package under a new id.
    void Add(std::string_view type, const PartName& target);

    /// Removes every relationship to one of these parts; false when there was none.
    bool RemoveTargets(const std::set<PartName>& targets);

    std::string Serialize() const;

private:
    std::string UnusedId() const;

    PartName m_source;
    std::vector<Relationship> m_all;
};
} // namespace host::opc
