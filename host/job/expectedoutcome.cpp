#include "host/job/expectedoutcome.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <sstream>
#include <stdexcept>

#include "host/pipeline/resulttext.h"

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

// More than any document has; what is beyond it is a slip of the pen.
constexpr std::size_t kMostPages = 1'000'000;

std::string WordOf(Decision decision)
{
    const auto found = std::find_if(kDecisionWords.begin(),
                                    kDecisionWords.end(),
                                    [&](const DecisionWord& word) { return word.decision == decision; });
    return std::string(found->word);
}

template <typename Number>
std::optional<Number> ParseNumber(std::string_view text, int base)
{
    Number number = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, number, base);
    return parsed.ec == std::errc() && parsed.ptr == end ? std::optional(number) : std::nullopt;
}

/// "turned" or "turned*3". False for a word of another kind.
bool TakePages(std::string_view word, Course& course)
{
    const std::size_t star = word.find('*');
    const std::string_view name = word.substr(0, star);
    const auto found = std::find_if(kDecisionWords.begin(),
                                    kDecisionWords.end(),
                                    [&](const DecisionWord& candidate) { return candidate.word == name; });
    const auto count =
        star == word.npos ? std::size_t{1} : ParseNumber<std::size_t>(word.substr(star + 1), 10).value_or(0);
    if (found == kDecisionWords.end() || count == 0 || count > kMostPages)
    {
        return false;
    }
    course.pages.insert(course.pages.end(), count, found->decision);
    return true;
}

bool IsEnd(std::string_view word)
{
    return word == kFailed || word == kUnusable;
}

/// "0x80070005".
std::optional<HRESULT> ParseFailure(std::string_view word)
{
    const auto bits = word.starts_with("0x") ? ParseNumber<std::uint32_t>(word.substr(2), 16) : std::nullopt;
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

std::string FormatEnd(const Course& course)
{
    switch (course.end)
    {
    case JobEnd::Done:
        return "done";
    case JobEnd::Unusable:
        return std::string(kUnusable);
    case JobEnd::FilterFailed:
        break;
    }
    return std::string(kFailed) + (course.result ? " " + pipeline::FormatResult(*course.result) : "");
}

std::string ExplainPage(const std::vector<report::PageReport>& pages, std::size_t index)
{
    if (index >= pages.size())
    {
        return "was not sent";
    }
    const report::PageReport& page = pages[index];
    return "was " + WordOf(report::Decide(page)) + ": " + report::ExplainDecision(page);
}

bool EndsAsExpected(const Course& expected, const JobResult& actual)
{
    return expected.end == actual.end && (!expected.result || *expected.result == actual.result);
}
} // namespace

Course ParseCourse(std::string_view text)
{
    Course course;
    const std::vector<std::string> words = SplitWords(text);
    auto word = words.begin();
    while (word != words.end() && TakePages(*word, course))
    {
        ++word;
    }
    if (word != words.end() && IsEnd(*word))
    {
        course.end = *word == kFailed ? JobEnd::FilterFailed : JobEnd::Unusable;
        ++word;
        if (word != words.end() && course.end == JobEnd::FilterFailed)
        {
            course.result = ParseFailure(*word);
            word += course.result ? 1 : 0;
        }
    }
    if (word != words.end())
    {
        const bool isPastTheEnd = course.end != JobEnd::Done && (IsEnd(*word) || TakePages(*word, course));
        throw std::runtime_error(
            "expected: " + *word +
            (isPastTheEnd ? " stands after the end of the job" : " cannot be understood"));
    }
    if (words.empty())
    {
        throw std::runtime_error("expected: says nothing");
    }
    return course;
}

std::string FormatCourse(const Course& course)
{
    std::string text;
    for (auto page = course.pages.begin(); page != course.pages.end();)
    {
        const auto next =
            std::find_if(page, course.pages.end(), [&](Decision other) { return other != *page; });
        const auto count = next - page;
        text += (text.empty() ? "" : " ") + WordOf(*page) + (count > 1 ? "*" + std::to_string(count) : "");
        page = next;
    }
    if (course.end == JobEnd::Done)
    {
        return text.empty() ? "no page" : text;
    }
    return text + (text.empty() ? "" : " ") + FormatEnd(course);
}

Course JobResult::ToCourse() const
{
    Course course;
    std::transform(pages.begin(), pages.end(), std::back_inserter(course.pages), report::Decide);
    course.end = end;
    if (end == JobEnd::FilterFailed)
    {
        course.result = result;
    }
    return course;
}

std::vector<std::string> FindDifferences(const Course& expected, const JobResult& actual)
{
    std::vector<std::string> differences;
    const Course course = actual.ToCourse();
    for (std::size_t index = 0; index < std::max(expected.pages.size(), course.pages.size()); ++index)
    {
        const bool isExpected = index < expected.pages.size();
        if (!isExpected || index >= course.pages.size() || expected.pages[index] != course.pages[index])
        {
            differences.push_back("page " + std::to_string(index + 1) + ": expected " +
                                  (isExpected ? WordOf(expected.pages[index]) : "no such page") + ", " +
                                  ExplainPage(actual.pages, index));
        }
    }
    if (!EndsAsExpected(expected, actual))
    {
        differences.push_back("job: expected " + FormatEnd(expected) + ", was " + FormatEnd(course) +
                              (actual.reason.empty() ? "" : ": " + actual.reason));
    }
    if (!actual.leftover.empty())
    {
        differences.push_back(actual.leftover);
    }
    return differences;
}
} // namespace host::job
