#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

// The name and the shape are libFuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz
{
inline std::string_view AsText(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

/// A character for each byte: what the parsers look at is ASCII.
inline std::wstring AsWideText(const std::uint8_t* data, std::size_t size)
{
    return {data, data + size};
}

inline void Require(bool holds)
{
    if (!holds)
    {
        std::abort();
    }
}
} // namespace fuzz
