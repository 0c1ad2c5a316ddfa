#pragma once

namespace support
{
/// The platform's name of a locale with a decimal comma.
#ifdef _WIN32
inline constexpr const char* kCommaLocale = "German_Germany.1252";
#else
inline constexpr const char* kCommaLocale = "de_DE.UTF-8";
#endif
} // namespace support
