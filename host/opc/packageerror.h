#pragma once

#include <stdexcept>
#include <string>

namespace host::opc
{
/// A package that cannot be read or written. The text names the part at fault, where there is one, and says
/// why: "/Documents/1/FixedDocument.fdoc: is missing from the package".
class PackageError : public std::runtime_error
{
public:
    explicit PackageError(const std::string& reason) : std::runtime_error(reason) {}
    PackageError(const std::string& part, const std::string& reason)
        : std::runtime_error(part + ": " + reason)
    {
    }
};
} // namespace host::opc
