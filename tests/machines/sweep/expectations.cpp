#include "machines/sweep/expectations.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <regex>
#include <string_view>
#include <utility>

namespace sweep
{
namespace
{
constexpr std::pair<std::string_view, HRESULT> kNames[] = {{"success", S_OK},
                                                           {"its own code", kFailure},
                                                           {"E_FAIL", E_FAIL},
                                                           {"E_PENDING", E_PENDING},
                                                           {"E_NOINTERFACE", E_NOINTERFACE},
                                                           {"E_OUTOFMEMORY", E_OUTOFMEMORY}};

std::string NameOf(HRESULT hr)
{
    for (const auto& [name, known] : kNames)
    {
        if (hr == known)
        {
            return std::string(name);
        }
    }
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "0x%08lX", static_cast<unsigned long>(hr));
    return text.data();
}

/// Reads a row such as "| `call`, called again while something is read | E_FAIL or success | ... |".
Exception ParseRow(const std::string& line)
{
    static const std::regex form(R"(\| `([^`]*)`(, called again)?(?: while ([^|]*))? \| ([^|]*) \| .* \|)");
    std::smatch cells;
    std::regex_match(line, cells, form);
    Exception exception{cells[1], cells[3], cells[2].matched, {}, line};
    for (const auto& [name, hr] : kNames)
    {
        if (cells[4].str().find(name) != std::string::npos)
        {
            exception.results.push_back(hr);
        }
    }
    return exception;
}
} // namespace

const std::vector<Exception>& Exceptions()
{
    static const std::vector<Exception> exceptions = [] {
        std::vector<Exception> rows;
        std::ifstream document(ERRORS_DOCUMENT);
        for (std::string line; std::getline(document, line);)
        {
            if (line.starts_with("| `"))
            {
                rows.push_back(ParseRow(line));
            }
        }
        return rows;
    }();
    return exceptions;
}

bool IsOfMemory(const Watch::Point& point)
{
    return point.function->failing == Failing::NoMemory || point.function->failing == Failing::ResultOfMemory;
}

const Exception* FindException(const Watch::Point& point)
{
    const auto& all = Exceptions();
    const auto found = std::find_if(
        all.begin(), all.end(), [&](const Exception& exception) { return exception.Holds(point); });
    return found == all.end() ? nullptr : &*found;
}

bool Exception::Holds(const Watch::Point& point) const
{
    const std::string name = point.Name();
    const bool isNamed =
        call.ends_with('*') ? name.starts_with(call.substr(0, call.size() - 1)) : name == call;
    return isNamed && !IsOfMemory(point) && (stage.empty() || stage == point.stage) &&
           (!isAgain || point.isAgain);
}

std::vector<std::string> Judge(const Outcome& outcome, const Outcome& good, const Watch::Point& point)
{
    std::vector<std::string> faults = outcome.faults;
    const Exception* const exception = FindException(point);
    const std::vector<HRESULT> expected =
        exception != nullptr ? exception->results
                             : std::vector<HRESULT>{IsOfMemory(point) ? E_OUTOFMEMORY : kFailure};
    if (std::find(expected.begin(), expected.end(), outcome.result) == expected.end())
    {
        faults.push_back(outcome.method + " answers " + NameOf(outcome.result) + " in place of " +
                         NameOf(expected.front()));
    }
    for (const auto& [kind, count] : outcome.left)
    {
        const auto usual = good.left.find(kind);
        if (usual == good.left.end() || usual->second != count)
        {
            faults.push_back(std::to_string(count) + " of " + kind + " left");
        }
    }
    const bool isWhole = SUCCEEDED(outcome.result) || outcome.method == "ShutdownOperation";
    // A part of another kind is sent with another method.
    if (isWhole ? outcome.sent.size() != good.sent.size()
                : exception == nullptr &&
                      !std::equal(outcome.sent.begin(),
                                  outcome.sent.end(),
                                  good.sent.begin(),
                                  good.sent.begin() + static_cast<std::ptrdiff_t>(
                                                          std::min(outcome.sent.size(), good.sent.size()))))
    {
        faults.emplace_back("other parts are sent");
    }
    // Without impersonation nothing is closed; the filter tries again on destruction.
    if (!outcome.isProviderClosed && (point.Name() != "SetThreadToken" || FAILED(outcome.result)))
    {
        faults.emplace_back("a ticket provider is open after the operation");
    }
    // If COM cannot be initialised no shutdown is requested; and closing the sender comes after that request.
    const std::string name = point.Name();
    const bool isUnreported = name == "CoInitializeEx" || name == "IXpsDocumentConsumer::CloseSender";
    if (outcome.method == "StartOperation" && FAILED(outcome.result) && outcome.isReported == isUnreported)
    {
        faults.emplace_back("the pipeline is not asked to shut down");
    }
    return faults;
}
} // namespace sweep
