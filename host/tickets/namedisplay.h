#pragma once

#include <string>
#include <vector>

#include "host/ticketservice/printschema.h"

namespace host::tickets
{
/// Shows the names of a ticket to people: keywords plainly, other names with the ticket's own prefix. Borrows
/// the prefixes.
class NameDisplay
{
public:
    explicit NameDisplay(const std::vector<ticketservice::PrefixBinding>& prefixes) : m_prefixes(prefixes) {}

    std::string operator()(const ticketservice::ExpandedName& name) const;

private:
    const std::vector<ticketservice::PrefixBinding>& m_prefixes;
};
} // namespace host::tickets
