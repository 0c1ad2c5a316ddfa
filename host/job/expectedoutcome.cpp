#include "host/job/expectedoutcome.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "host/pipeline/resulttext.h"
#include "host/report/pagewords.h"
#include "host/xml/text.h"

namespace host::job
{
using report::Decision;

namespace
{
constexpr const char* kDone = "done";
constexpr const char* kFailed = "failed";
constexpr const char* kUnusable = "unusable";

/// The decision's name as one word: "turned+refitted".
std::string WordOf(Decision decision)
{
    std::string word = report::NameOf(decision);
    if (const std::size_t comma = word.find(", "); comma != word.npos)
    {
        word.replace(comma, 2, "+");
    }
    return word;
}

/// "turned" or "turned*3". False for a word of another kind.
bool TakePages(const std::string& word, std::vector<Decision>& pages)
{
    // More than any document has; a larger count is a typing error.
    constexpr std::size_t mostPages = 1'000'000;
    const std::string name = word.substr(0, word.find('*'));
    const auto count =
        name == word ? 1 : xml::ParseNumber<std::size_t>(word.substr(name.size() + 1), 10).value_or(0);
    const auto found = std::find_if(std::begin(report::kDecisions),
                                    std::end(report::kDecisions),
                                    [&](Decision decision) { return WordOf(decision) == name; });
    if (found == std::end(report::kDecisions) || count == 0 || count > mostPages)
    {
        return false;
    }
    pages.insert(pages.end(), count, *found);
    return true;
}

bool IsEnd(const std::string& word)
{
    return word == kFailed || word == kUnusable;
}

/// "0x80070005" as the host writes it; empty for what is no failure.
std::string ReadFailure(std::string_view word)
{
    const auto bits =
        word.starts_with("0x") ? xml::ParseNumber<std::uint32_t>(word.substr(2), 16) : std::nullopt;
    const auto result = static_cast<HRESULT>(bits.value_or(0));
    return FAILED(result) ? pipeline::FormatResult(result) : "";
}

std::string ExplainPage(const CaseResult& actual, std::size_t index)
{
    return index < actual.reasons.size()
               ? "was " + WordOf(actual.outcome.pages[index]) + ": " + actual.reasons[index]
               : "was not sent";
}
} // namespace

ExpectedOutcome ParseOutcome(std::string_view text)
{
    ExpectedOutcome outcome;
    std::istringstream words{std::string(text)};
    std::string word;
    words >> word;
    if (word.empty())
    {
        throw std::runtime_error("expected: says nothing");
    }
    while (words && TakePages(word, outcome.pages))
    {
        words >> word;
    }
    if (words && IsEnd(word))
    {
        outcome.end = word;
        words >> word;
        const std::string failure = words && outcome.end == kFailed ? ReadFailure(word) : "";
        if (!failure.empty())
        {
            outcome.end += " " + failure;
            words >> word;
        }
    }
    if (words)
    {
        const bool isPastTheEnd = outcome.end != kDone && (IsEnd(word) || TakePages(word, outcome.pages));
        throw std::runtime_error(
            "expected: " + word +
            (isPastTheEnd ? " stands after the end of the job" : " cannot be understood"));
    }
    return outcome;
}

std::string FormatOutcome(const ExpectedOutcome& outcome)
{
    std::string text;
    for (auto page = outcome.pages.begin(); page != outcome.pages.end();)
    {
        const auto next =
            std::find_if(page, outcome.pages.end(), [&](Decision other) { return other != *page; });
        const auto count = next - page;
        text += (text.empty() ? "" : " ") + WordOf(*page) + (count > 1 ? "*" + std::to_string(count) : "");
        page = next;
    }
    if (outcome.end == kDone)
    {
        return text.empty() ? "no page" : text;
    }
    return text + (text.empty() ? "" : " ") + outcome.end;
}

std::vector<std::string> FindDifferences(const ExpectedOutcome& expected, const CaseResult& actual)
{
    std::vector<std::string> differences;
    const ExpectedOutcome& outcome = actual.outcome;
    for (std::size_t index = 0; index < std::max(expected.pages.size(), outcome.pages.size()); ++index)
    {
        const bool isExpected = index < expected.pages.size();
        if (!isExpected || index >= outcome.pages.size() || expected.pages[index] != outcome.pages[index])
        {
            differences.push_back("page " + std::to_string(index + 1) + ": expected " +
                                  (isExpected ? WordOf(expected.pages[index]) : "no such page") + ", " +
                                  ExplainPage(actual, index));
        }
    }
    const bool endsAsExpected =
        outcome.end == expected.end || (expected.end == kFailed && outcome.end.starts_with(kFailed));
    if (!endsAsExpected)
    {
        differences.push_back("job: expected " + expected.end + ", was " + outcome.end +
                              (actual.endReason.empty() ? "" : ": " + actual.endReason));
    }
    if (!actual.leaks.empty())
    {
        differences.push_back(actual.leaks);
    }
    return differences;
}
} // namespace host::job
