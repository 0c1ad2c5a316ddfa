#include "host/xps/xpsdocument.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/host/testpackages.h"

namespace host::xps
{
namespace
{
std::string FaultOfPackage(const std::string& name)
{
    return FaultOf([&] {
        const opc::Package package(TestPackage(name));
        XpsDocument document(package);
        while (const auto part = document.Next())
        {
            package.Read(part->name);
        }
    });
}

TEST(XpsDocument, NamesThePartAndTheReasonOfEachFault)
{
    EXPECT_EQ(FaultOfPackage("is-not-there"), "there is no such file");
    // The table says of each broken package how the message begins.
    for (const auto& package : nlohmann::json::parse(ReadData("packages/packages.json")))
    {
        const std::string expected = package.value("fault", "");
        const std::string name = package["name"];
        EXPECT_EQ(expected.empty() ? "" : FaultOfPackage(name).substr(0, expected.size()), expected) << name;
    }
}
} // namespace
} // namespace host::xps
