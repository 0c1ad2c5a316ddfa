#include "host/tickets/replacement.h"

#include <algorithm>

#include "host/tickets/ticketdocument.h"
#include "host/tickets/ticketfacts.h"

namespace host::tickets
{
namespace
{

std::optional<Selection> FindSelection(const Node& ticket, const char* name)
{
    const Node* const option = FindSelectedOption(ticket, Keyword(name));
    if (option == nullptr)
    {
        return std::nullopt;
    }
    return Selection{option->name, FindRequestedSize(ticket, *option)};
}

bool IsSame(const Selection& one, const Selection& other)
{
    return one.option == other.option && (!one.size || !other.size || one.size == other.size);
}

std::string Describe(const Selection& selection)
{
    const auto& size = selection.size;
    return selection.option.local +
           (size ? " " + FormatSheet({size->widthMicrometres, size->heightMicrometres}) : "");
}

void FindReplacement(const std::vector<SheetSelection>& wanted,
                     const SheetSelection& effective,
                     std::optional<Selection> SheetSelection::*feature,
                     std::vector<Replacement>& replacements)
{
    const auto heard = std::find_if(wanted.begin(), wanted.end(), [&](const SheetSelection& ticket) {
        return (ticket.*feature).has_value();
    });
    const auto& taken = effective.*feature;
    if (heard != wanted.end() && taken && !IsSame(*((*heard).*feature), *taken))
    {
        replacements.push_back({Describe(*((*heard).*feature)), Describe(*taken)});
    }
}
} // namespace

SheetSelection ReadSheetSelection(const std::string& ticket)
{
    const auto document = ReadDocument(ticket, Kind::PrintTicket);
    return {FindSelection(document.root, "PageOrientation"), FindSelection(document.root, "PageMediaSize")};
}

std::vector<Replacement> FindReplacements(const std::vector<SheetSelection>& wanted,
                                          const SheetSelection& effective)
{
    std::vector<Replacement> replacements;
    FindReplacement(wanted, effective, &SheetSelection::orientation, replacements);
    FindReplacement(wanted, effective, &SheetSelection::medium, replacements);
    return replacements;
}
} // namespace host::tickets
