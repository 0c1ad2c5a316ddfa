#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "host/opc/files.h"
#include "host/opc/package.h"
#include "host/opc/partname.h"
#include "support/table.h"

namespace host
{
/// A package that the build made from tests/data/packages; the suite runs in the build's folder of tests.
inline std::filesystem::path TestPackage(const std::string& name)
{
    return std::filesystem::path("packages") / (name + ".xps");
}

inline opc::PartName Part(const std::string& name)
{
    return opc::PartName::FromItem(name).value();
}

inline const std::string kNoFault = "(no fault)";

/// The text of the failure that `act` throws, without the file that it is about; kNoFault where it throws
/// none.
template <typename Failure = opc::FileError, typename Action>
std::string FaultOf(Action&& act)
{
    try
    {
        act();
    }
    catch (const Failure& fault)
    {
        if constexpr (std::is_base_of_v<opc::FileError, Failure>)
        {
            return fault.Reason();
        }
        return fault.what();
    }
    return kNoFault;
}

/// The bytes of text in UTF-16, without a mark.
template <typename Text>
std::string ToUtf16(const Text& text, bool isBigEndian = false)
{
    std::string bytes;
    for (const auto character : text)
    {
        const auto unit = static_cast<char16_t>(character);
        const char high = static_cast<char>(unit >> 8);
        const char low = static_cast<char>(unit & 0xFF);
        bytes.append({isBigEndian ? high : low, isBigEndian ? low : high});
    }
    return bytes;
}

/// An empty folder for the output of the test that is running, removed with all that is in it.
class OutputFolder
{
public:
    OutputFolder()
    {
        std::filesystem::remove_all(m_path);
        std::filesystem::create_directories(m_path);
    }
    OutputFolder(const OutputFolder&) = delete;
    OutputFolder& operator=(const OutputFolder&) = delete;
    ~OutputFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    std::filesystem::path operator/(const std::string& file) const { return m_path / file; }

private:
    std::filesystem::path m_path = "output";
};

inline void WriteFile(const std::filesystem::path& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

inline std::string ReadFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A file of tests/data.
inline std::string ReadData(const std::string& name)
{
    std::string content = ReadFile(TEST_DATA_PATH "/" + name);
    EXPECT_FALSE(content.empty()) << name;
    return content;
}

/// The rows of a table in tests/data.
inline std::vector<std::vector<std::string>> ReadTable(const std::string& name)
{
    return support::LoadTable(TEST_DATA_PATH "/" + name);
}
} // namespace host
