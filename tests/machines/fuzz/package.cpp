#include <fstream>

#include <unistd.h>

#include "host/opc/files.h"
#include "host/opc/package.h"
#include "host/opc/packagewriter.h"
#include "host/xps/xpsdocument.h"
#include "machines/fuzz/bytes.h"

namespace
{
/// Reads as a run does, and writes again what could be read.
void ReadAndCopy(const std::string& path)
{
    const host::opc::Package package(path);
    host::xps::XpsDocument document(package);
    while (const auto part = document.Next())
    {
        package.Read(part->name);
        package.ContentTypeOf(part->name);
    }
    host::opc::PackageWriter writer(package, path + ".out");
    writer.AddPart(host::opc::PartName::FromItem("added").value(), "a/b", writer.NewContent("text"));
    writer.Commit();
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const std::string path = "/dev/shm/fuzz." + std::to_string(getpid());
    std::ofstream(path, std::ios::binary) << fuzz::AsText(data, size);
    try
    {
        ReadAndCopy(path);
    }
    catch (const host::opc::FileError&)
    {
    }
    unlink(path.c_str());
    unlink((path + ".out").c_str());
    return 0;
}
