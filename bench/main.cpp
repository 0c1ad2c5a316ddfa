#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/utility/safecoinit.h"
#include "bench/callcounts.h"
#include "bench/cost.h"
#include "bench/markuppasses.h"
#include "bench/pagejob.h"
#include "host/pipeline/filtermodule.h"

namespace bench
{
namespace
{
using Words = std::vector<std::string>;

std::string ReadFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
    {
        throw std::runtime_error(path + ": cannot be read");
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

void Print(const std::string& what, const Cost& cost)
{
    std::cout << what << " " << cost.processor.count() << " " << cost.wall.count();
}

/// Takes the passes by turns, over all pages each.
void RunMarkup(int rounds, const Words& files)
{
    std::vector<MarkupPage> pages;
    for (const std::string& file : files)
    {
        pages.emplace_back(ReadFile(file));
    }
    for (int round = 0; round < rounds; ++round)
    {
        for (const MarkupPass& pass : kMarkupPasses)
        {
            const Stopwatch watch;
            for (const MarkupPage& page : pages)
            {
                pass.run(page);
            }
            Print(pass.name, watch.Read());
            std::cout << "\n";
        }
    }
}

/// Prints the turned page.
void RunTurn(const std::string& file)
{
    std::cout << MarkupPage(ReadFile(file)).turned;
}

/// Runs the module, its DLL over the offline ticket service, over a job, once it has warmed up.
void RunJob(const std::filesystem::path& folder, const PageJob& job)
{
    const host::pipeline::LoadedLibrary tickets(folder / "offline" / "prntvpt.dll");
    const host::pipeline::FilterModule module(folder / "pagevalidatefilter.dll");
    host::pipeline::CallTrace trace;
    const auto run = [&](const PageJob& each) {
        RunPageJob(*module.CreateFilter(trace), each, [](const std::string&) {});
    };
    run({job.kind, 1, job.markup});
    const Stopwatch watch;
    run(job);
    Print("job", watch.Read());
    std::cout << " " << PeakMemory() << "\n";
}

void RunCalls()
{
    for (const char* kind : {"inherited", "passed", "turned", "refitted"})
    {
        for (const auto& [name, count] : CountCallsOfPage(KindOf(kind)))
        {
            std::cout << kind << "\t" << name << "\t" << count << "\n";
        }
    }
}

void Run(const std::filesystem::path& program, const Words& words)
{
    const std::string& what = words.at(0);
    if (what == "markup")
    {
        RunMarkup(std::stoi(words.at(1)), {words.begin() + 2, words.end()});
    }
    else if (what == "turn")
    {
        RunTurn(words.at(1));
    }
    else if (what == "job")
    {
        RunJob(std::filesystem::absolute(program).parent_path(),
               {KindOf(words.at(1)),
                std::stoul(words.at(2)),
                words.size() > 3 ? ReadFile(words.at(3)) : kSmallPage,
                words.size() > 4 ? ReadFile(words.at(4)) : ""});
    }
    else if (what == "calls")
    {
        RunCalls();
    }
    else
    {
        throw std::invalid_argument(what + ": is nothing to measure");
    }
}
} // namespace
} // namespace bench

int main(int count, char** arguments)
{
    try
    {
        const base::utility::SafeCoInit com;
        bench::Run(arguments[0], {arguments + 1, arguments + count});
        return 0;
    }
    catch (const std::exception& failure)
    {
        std::cerr << "bench: " << failure.what() << "\n";
        return 2;
    }
}
