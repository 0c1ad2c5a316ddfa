#include "base/logging/errors.h"

#include <algorithm>

#include "base/logging/log.h"

namespace base::exception
{
namespace
{
constexpr const char* kLocatedMessage = "%s(%d) : %s\n";
} // namespace

std::string SourceLocation::Path() const
{
    std::string path = file;
    path.erase(std::min(path.rfind('.'), path.size()));
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

HresultError::HresultError(HRESULT hr, const char* path, int line)
    : hresult(hr),
      message(logging::FormatString(kLocatedMessage, path, line, logging::GetErrorText(hr).c_str()))
{
}

std::string DescribeFailure(const char* text, SourceLocation where)
{
    return logging::FormatString(kLocatedMessage, where.Path().c_str(), where.line, text);
}

void ThrowIfFailed(HRESULT hr, SourceLocation where)
{
    if (FAILED(hr))
    {
        throw HresultError(hr, where.Path().c_str(), where.line);
    }
}
} // namespace base::exception
