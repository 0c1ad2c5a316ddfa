#pragma once

#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace support
{
/// Reads the rows of a table in tests/data, where the suites run: cells between "||", without the blanks
/// around them. Lines that begin with '#' are comments.
inline std::vector<std::vector<std::string>> LoadTable(const std::string& name)
{
    std::ifstream file(name);
    EXPECT_TRUE(file) << name;
    std::vector<std::vector<std::string>> rows;
    for (std::string line; std::getline(file, line);)
    {
        if (line.empty() || line.starts_with('#'))
        {
            continue;
        }
        rows.emplace_back();
        for (std::size_t start = 0; start <= line.size();)
        {
            const std::size_t end = std::min(line.find("||", start), line.size());
            const std::string cell = line.substr(start, end - start);
            const std::size_t first = cell.find_first_not_of(' ');
            rows.back().push_back(
                first == std::string::npos ? "" : cell.substr(first, cell.find_last_not_of(' ') + 1 - first));
            start = end + 2;
        }
    }
    return rows;
}
} // namespace support
