#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "host/fileerror.h"
#include "host/opc/package.h"
#include "host/opc/partname.h"

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
template <typename Failure = FileError, typename Action>
std::string FaultOf(Action&& act)
{
    try
    {
        act();
    }
    catch (const Failure& fault)
    {
        if constexpr (std::is_base_of_v<FileError, Failure>)
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

/// An empty folder for one test's output, removed with all that is in it.
class OutputFolder
{
public:
    OutputFolder() : m_path(std::filesystem::path("output") / Name())
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

    std::vector<std::string> Files() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_path))
        {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }

private:
    static std::string Name()
    {
        const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string(test->test_suite_name()) + "." + test->name();
        std::replace(name.begin(), name.end(), '/', '.');
        return name;
    }

    std::filesystem::path m_path;
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

/// The rows of a table in tests/data: cells between bars, with any blanks around them; "#" begins a remark.
inline std::vector<std::vector<std::string>> ReadTable(const std::string& name)
{
    const std::regex bar(" *\\| *");
    std::istringstream lines(ReadData(name));
    std::vector<std::vector<std::string>> rows;
    for (std::string line; std::getline(lines, line);)
    {
        if (!line.starts_with('#'))
        {
            rows.emplace_back(std::sregex_token_iterator(line.begin(), line.end(), bar, -1),
                              std::sregex_token_iterator());
        }
    }
    return rows;
}
} // namespace host
