#include "host/filebytes.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

#include "host/paths.h"

namespace host
{
std::string ReadFileBytes(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(stream), {});
    if (!stream.is_open() || stream.bad())
    {
        throw std::runtime_error(ToUtf8Path(file) + ": cannot be read");
    }
    return bytes;
}
} // namespace host
