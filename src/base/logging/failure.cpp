#include "base/logging/failure.h"

#include <algorithm>

#include "base/logging/log.h"

namespace base::exception
{
std::string SourceLocation::Path() const
{
    std::string path = file;
    path.erase(std::min(path.rfind('.'), path.size()));
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

std::string DescribeFailure(const char* text, SourceLocation where)
{
    return DescribeFailure(text, where.Path().c_str(), where.line);
}

std::string DescribeFailure(const char* text, const char* path, int line)
{
    return logging::FormatString("%s(%d) : %s\n", path, line, text);
}
} // namespace base::exception
