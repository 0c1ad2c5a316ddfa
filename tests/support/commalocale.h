#pragma once

namespace support
{
/// A locale whose numbers have a decimal comma, as this platform names it.
#ifdef _WIN32
inline constexpr const char* kCommaLocale = "German_Germany.1252";
#else
inline constexpr const char* kCommaLocale = "de_DE.UTF-8";
#endif
} // namespace support
