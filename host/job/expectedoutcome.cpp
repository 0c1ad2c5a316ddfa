#include "host/job/expectedoutcome.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <sstream>
#include <stdexcept>

#include "host/pipeline/resulttext.h"
#include "host/report/pagenotes.h"
#include "host/xml/text.h"

namespace host::job
{
using report::Decision;

namespace
{
struct DecisionWord
{
    std::string_view word;
    Decision decision;
};

constexpr std::array kDecisionWords = {DecisionWord{"passed", Decision::Passed},
                                       DecisionWord{"turned", Decision::Turned},
                                       DecisionWord{"refitted", Decision::Refitted},
                                       DecisionWord{"turned+refitted", Decision::TurnedAndRefitted}};
constexpr std::string_view kFailed = "failed";
constexpr std::string_view kUnusable = "unusable";

// More than any document has; a larger count is a typing error.
constexpr std::size_t kMostPages = 1'000'000;

std::string WordOf(Decision decision)
{
    const auto found = std::find_if(kDecisionWords.begin(),
                                    kDecisionWords.end(),
                                    [&](const DecisionWord& word) { return word.decision == decision; });
    return std::string(found->word);
}

/// "turned" or "turned*3". False for a word of another kind.
bool TakePages(std::string_view word, ExpectedOutcome& outcome)
{
    const std::size_t star = word.find('*');
    const std::string_view name = word.substr(0, star);
    const auto found = std::find_if(kDecisionWords.begin(),
                                    kDecisionWords.end(),
                                    [&](const DecisionWord& candidate) { return candidate.word == name; });
    const auto count = star == word.npos
                           ? std::size_t{1}
                           : xml::ParseNumber<std::size_t>(word.substr(star + 1), 10).value_or(0);
    if (found == kDecisionWords.end() || count == 0 || count > kMostPages)
    {
        return false;
    }
    outcome.pages.insert(outcome.pages.end(), count, found->decision);
    return true;
}

bool IsEnd(std::string_view word)
{
    return word == kFailed || word == kUnusable;
}

/// "0x80070005".
std::optional<HRESULT> ParseFailure(std::string_view word)
{
    const auto bits =
        word.starts_with("0x") ? xml::ParseNumber<std::uint32_t>(word.substr(2), 16) : std::nullopt;
    const auto result = bits ? std::optional(static_cast<HRESULT>(*bits)) : std::nullopt;
    return result && FAILED(*result) ? result : std::nullopt;
}

std::vector<std::string> SplitWords(std::string_view text)
{
    std::istringstream stream{std::string(text)};
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
    {
        words.push_back(word);
    }
    return words;
}

std::string FormatEnd(const ExpectedOutcome& outcome)
{
    switch (outcome.end)
    {
    case JobEnd::Done:
        return "done";
    case JobEnd::Unusable:
        return std::string(kUnusable);
    case JobEnd::FilterFailed:
        break;
    }
    return std::string(kFailed) + (outcome.result ? " " + pipeline::FormatResult(*outcome.result) : "");
}

std::string ExplainPage(const std::vector<report::PageReport>& pages, std::size_t index)
{
    if (index >= pages.size())
    {
        return "was not sent";
    }
    const report::PageReport& page = pages[index];
    return "was " + WordOf(report::Decide(page)) + ": " + report::ExplainWithNotes(page);
}

bool EndsAsExpected(const ExpectedOutcome& expected, const CaseResult& actual)
{
    return expected.end == actual.end && (!expected.result || *expected.result == actual.result);
}
} // namespace

ExpectedOutcome ParseOutcome(std::string_view text)
{
    ExpectedOutcome outcome;
    const std::vector<std::string> words = SplitWords(text);
    auto word = words.begin();
    while (word != words.end() && TakePages(*word, outcome))
    {
        ++word;
    }
    if (word != words.end() && IsEnd(*word))
    {
        outcome.end = *word == kFailed ? JobEnd::FilterFailed : JobEnd::Unusable;
        ++word;
        if (word != words.end() && outcome.end == JobEnd::FilterFailed)
        {
            outcome.result = ParseFailure(*word);
            word += outcome.result ? 1 : 0;
        }
    }
    if (word != words.end())
    {
        const bool isPastTheEnd = outcome.end != JobEnd::Done && (IsEnd(*word) || TakePages(*word, outcome));
        throw std::runtime_error(
            "expected: " + *word +
            (isPastTheEnd ? " stands after the end of the job" : " cannot be understood"));
    }
    if (words.empty())
    {
        throw std::runtime_error("expected: says nothing");
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
    if (outcome.end == JobEnd::Done)
    {
        return text.empty() ? "no page" : text;
    }
    return text + (text.empty() ? "" : " ") + FormatEnd(outcome);
}

ExpectedOutcome CaseResult::ToOutcome() const
{
    ExpectedOutcome outcome;
    std::transform(pages.begin(), pages.end(), std::back_inserter(outcome.pages), report::Decide);
    outcome.end = end;
    if (end == JobEnd::FilterFailed)
    {
        outcome.result = result;
    }
    return outcome;
}

std::vector<std::string> FindDifferences(const ExpectedOutcome& expected, const CaseResult& actual)
{
    std::vector<std::string> differences;
    const ExpectedOutcome outcome = actual.ToOutcome();
    for (std::size_t index = 0; index < std::max(expected.pages.size(), outcome.pages.size()); ++index)
    {
        const bool isExpected = index < expected.pages.size();
        if (!isExpected || index >= outcome.pages.size() || expected.pages[index] != outcome.pages[index])
        {
            differences.push_back("page " + std::to_string(index + 1) + ": expected " +
                                  (isExpected ? WordOf(expected.pages[index]) : "no such page") + ", " +
                                  ExplainPage(actual.pages, index));
        }
    }
    if (!EndsAsExpected(expected, actual))
    {
        differences.push_back("job: expected " + FormatEnd(expected) + ", was " + FormatEnd(outcome) +
                              (actual.reason.empty() ? "" : ": " + actual.reason));
    }
    if (!actual.leaks.empty())
    {
        differences.push_back(actual.leaks);
    }
    return differences;
}
} // namespace host::job
