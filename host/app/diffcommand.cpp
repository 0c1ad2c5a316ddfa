#include "host/app/commandline.h"

#include <array>
#include <string>

#include "base/utility/safecoinit.h"
#include "host/app/console.h"
#include "host/diff/packagediff.h"
#include "host/opc/package.h"
#include "host/xml/text.h"

namespace host::app
{
namespace
{
using diff::PartState;
} // namespace

ExitStatus Execute(const DiffCommand& command, Console& console)
{
    const base::utility::SafeCoInit com;
    const opc::Package one(command.input);
    const opc::Package other(command.other);
    std::array<std::size_t, 4> counts{};
    diff::ComparePackages(one, other, [&](const diff::PartDifference& part) {
        ++counts[static_cast<std::size_t>(part.state)];
        if (part.state == PartState::Identical && command.showsChangesOnly)
        {
            return;
        }
        std::string line = diff::NameOf(part.state);
        line.resize(11, ' ');
        console.PrintOut(line + part.part + (part.what.empty() ? "" : ": " + part.what) + "\n");
    });
    std::string totals;
    std::size_t all = 0;
    for (const auto state : {PartState::Identical, PartState::Changed, PartState::Added, PartState::Removed})
    {
        const std::size_t count = counts[static_cast<std::size_t>(state)];
        totals += (totals.empty() ? ": " : "; ") + std::to_string(count) + " " + diff::NameOf(state);
        all += count;
    }
    console.PrintOut(xml::CountOf(all, "part") + totals + "\n");
    const bool isSame = counts[static_cast<std::size_t>(PartState::Identical)] == all;
    return isSame ? ExitStatus::Done : ExitStatus::Differs;
}
} // namespace host::app
