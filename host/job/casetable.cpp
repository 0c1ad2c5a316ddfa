#include "host/job/casetable.h"

#include <algorithm>
#include <array>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "host/opc/files.h"

namespace host::job
{
namespace
{
constexpr std::string_view kBlanks = " \t\r";

constexpr std::size_t kColumns = 4;

std::string_view Trim(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

std::string_view WithoutComment(std::string_view line)
{
    for (std::size_t sign = line.find('#'); sign != line.npos; sign = line.find('#', sign + 1))
    {
        if (sign == 0 || kBlanks.find(line[sign - 1]) != kBlanks.npos)
        {
            return line.substr(0, sign);
        }
    }
    return line;
}

std::array<std::string, kColumns> SplitCells(std::string_view line)
{
    std::array<std::string, kColumns> cells;
    if (std::count(line.begin(), line.end(), '|') != kColumns - 1)
    {
        throw std::runtime_error("does not have the four columns document | options | device | expected");
    }
    for (std::string& cell : cells)
    {
        const std::size_t end = std::min(line.find('|'), line.size());
        cell = Trim(line.substr(0, end));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return cells;
}

void PlaceAt(const std::filesystem::path& folder, std::optional<std::filesystem::path>& file)
{
    if (file)
    {
        file = folder / *file;
    }
}

Case ReadCase(std::string_view line, const std::filesystem::path& folder)
{
    const auto [document, options, device, expected] = SplitCells(line);
    if (document.empty())
    {
        throw std::runtime_error("names no document");
    }
    Case row;
    row.job = ParseJobOptions(options);
    row.job.document = folder / opc::FromUtf8Path(document);
    row.expected = ParseOutcome(expected);
    row.title = document + (options.empty() ? "" : " " + options);
    if (!device.empty())
    {
        if (row.job.device || row.job.printer)
        {
            throw std::runtime_error("has --device or --printer and a device of its column");
        }
        row.job.device = opc::FromUtf8Path(device);
        row.title += " on " + device;
    }
    PlaceAt(folder, row.job.userTicket);
    PlaceAt(folder, row.job.device);
    PlaceAt(folder, row.job.module);
    return row;
}
} // namespace

CaseTable ReadCaseTable(std::string_view text, const std::filesystem::path& folder)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    text.remove_prefix(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
    CaseTable table;
    std::istringstream lines{std::string(text)};
    std::string whole;
    for (std::size_t number = 1; std::getline(lines, whole); ++number)
    {
        const std::string_view line = Trim(WithoutComment(whole));
        if (line.empty())
        {
            continue;
        }
        try
        {
            table.cases.push_back(ReadCase(line, folder));
            table.cases.back().line = number;
        }
        catch (const std::runtime_error& fault)
        {
            table.faults.push_back({number, fault.what()});
        }
    }
    return table;
}

std::string RecordOutcomes(std::string_view text, const std::map<std::size_t, ExpectedOutcome>& outcomes)
{
    std::string recorded;
    std::istringstream lines{std::string(text)};
    std::string line;
    for (std::size_t number = 1; std::getline(lines, line); ++number)
    {
        if (const auto outcome = outcomes.find(number); outcome != outcomes.end())
        {
            const std::size_t comment = WithoutComment(line).size();
            const std::size_t bar = line.rfind('|', comment);
            const std::string end = line.substr(comment);
            line = line.substr(0, bar + 1) + " " + FormatOutcome(outcome->second) +
                   (end.empty() ? "" : "  " + end) + (line.ends_with('\r') && end.empty() ? "\r" : "");
        }
        recorded += line + "\n";
    }
    return recorded;
}
} // namespace host::job
