#pragma once

#include <filesystem>
#include <string_view>

#include "host/opc/temporaryfile.h"

namespace host::opc
{
/// A file that appears complete or not at all: it is written under a temporary name beside the target, which
/// Commit renames. Without Commit an existing file stays as it was, and no temporary file is left.
class ReplacedFile
{
public:
    /// Throws FileError, as all below.
    explicit ReplacedFile(std::filesystem::path target);
    ReplacedFile(const ReplacedFile&) = delete;
    ReplacedFile& operator=(const ReplacedFile&) = delete;
    ~ReplacedFile();

    void Write(std::string_view bytes);
    void Commit();

private:
    [[noreturn]] void Fail() const;

    std::filesystem::path m_target;
    opc::TemporaryFile m_temporary;
};
} // namespace host::opc
