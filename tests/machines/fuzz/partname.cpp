#include "host/opc/partname.h"
#include "host/opc/files.h"
#include "machines/fuzz/bytes.h"

namespace
{
using host::opc::PartName;

/// However a name came to be, it lies within the package and is read back as it stands.
void RequireSound(const PartName& name)
{
    fuzz::Require(!host::opc::StepsUp(name.Text()));
    fuzz::Require(PartName::FromItem(name.Text()) == name);
    fuzz::Require(PartName::FromItem(name.Text())->Text() == name.Text());
    fuzz::Require(name.RelationshipsPart().RelationshipsSource() == name);
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = fuzz::AsText(data, size);
    static const PartName page = PartName::FromItem("Documents/1/Pages/1.fpage").value();
    if (const auto name = PartName::FromItem(host::opc::ParseItemName(text).logicalName))
    {
        RequireSound(*name);
    }
    for (const PartName& source : {page, PartName::PackageRoot()})
    {
        if (const auto name = source.TryResolve(text))
        {
            RequireSound(*name);
        }
    }
    return 0;
}
