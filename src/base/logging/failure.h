#pragma once

#include <string>

namespace base::exception
{
/// The source and line where a failure was raised. As a default argument it names the caller's line.
struct SourceLocation
{
    const char* file;
    int line;

    // The builtins, not std::source_location, which clang-tidy 14 cannot parse in libstdc++ 12.
    static constexpr SourceLocation Current(const char* file = __builtin_FILE(),
                                            int line = __builtin_LINE()) noexcept
    {
        return {file, line};
    }

    /// The file as messages name it: relative to the source tree, with backslashes and without its ending.
    /// So sources that raise messages keep path and name (docs/surface.md).
    std::string Path() const;
};

/// Formats a message: path, line and text as "%s(%d) : %s\n".
std::string DescribeFailure(const char* text, SourceLocation where);
std::string DescribeFailure(const char* text, const char* path, int line);

/// Throws `Exception` with a message of `text` that names the caller's source and line.
template <typename Exception>
[[noreturn]] void Throw(const char* text, SourceLocation where = SourceLocation::Current())
{
    throw Exception(DescribeFailure(text, where));
}
} // namespace base::exception
