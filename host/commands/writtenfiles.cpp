#include "host/commands/writtenfiles.h"

#include <string>
#include <system_error>

#include "host/commands/jobground.h"
#include "host/fileerror.h"
#include "platform/win32.h"

namespace host
{
namespace
{
using OptionalPath = std::optional<std::filesystem::path>;

bool IsSameFile(const std::filesystem::path& one, const std::filesystem::path& other)
{
    std::error_code missing;
    if (std::filesystem::equivalent(one, other, missing))
    {
        return true;
    }
    // Files that are still to be made have their names only, whose case does not count.
    const std::wstring left = std::filesystem::weakly_canonical(std::filesystem::absolute(one)).wstring();
    const std::wstring right = std::filesystem::weakly_canonical(std::filesystem::absolute(other)).wstring();
    return CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_EQUAL;
}

void RequireAnother(const char* what,
                    const OptionalPath& written,
                    const char* other,
                    const OptionalPath& path)
{
    if (written && path && IsSameFile(*written, *path))
    {
        throw FileError(*written, std::string(what) + " would replace " + other);
    }
}
} // namespace

void RequireFilesOfTheirOwn(const RunCommand& command)
{
    const std::pair<const char*, OptionalPath> read[] = {{"the input", command.input},
                                                         {"the user's ticket", command.setting.userTicket},
                                                         {"the device's description", command.setting.device},
                                                         {"the filter", ModuleOf(command.setting)}};
    for (const auto& [other, path] : read)
    {
        RequireAnother("the output", command.output, other, path);
        RequireAnother("the report", command.report, other, path);
    }
    RequireAnother("the report", command.report, "the output", command.output);
}
} // namespace host
