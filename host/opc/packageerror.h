#pragma once

#include <filesystem>
#include <string>

#include "host/opc/files.h"

namespace host::opc
{
/// A package that cannot be used. The text names the package, the part at fault if there is one, and the
/// reason: "in.xps: /Documents/1/FixedDocument.fdoc: is missing from the package".
class PackageError : public FileError
{
public:
    using FileError::FileError;
    PackageError(const std::filesystem::path& package, const std::string& part, const std::string& reason)
        : FileError(package, part + ": " + reason)
    {
    }
};
} // namespace host::opc
