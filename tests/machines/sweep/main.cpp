#include <atomic>
#include <chrono>
#include <cstdio>
#include <cwchar>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "machines/sweep/expectations.h"
#include "machines/sweep/job.h"

#include <winternl.h>

// Runs a print job in the module once for each call and each allocation that the module makes, makes that one
// fail, and checks the outcome.
namespace
{
using sweep::Outcome;
using sweep::Watch;

// A prime number, so that the sample does not pick the same call of every page.
constexpr std::size_t kSampleStep = 499;
/// The sample runs all points of a kind that has at most so many.
constexpr std::size_t kSmallKind = 8;
/// One of so many allocations is run again with every later allocation failing.
constexpr std::size_t kForGoodStep = 5;

struct Options
{
    std::size_t point = 0;
    bool isForGood = false;
    bool isSample = false;
    bool areStreamsShort = false;
    // Runs every step-th point, from the first one on.
    std::size_t first = 1;
    std::size_t step = 1;
};

// The loader's notification of modules, which MinGW does not declare.
struct LoaderNotification
{
    ULONG flags;
    const UNICODE_STRING* path;
    const UNICODE_STRING* name;
    HMODULE module;
    ULONG size;
};

void CALLBACK OnModule(ULONG reason, const LoaderNotification* notification, void*)
{
    constexpr ULONG loaded = 1;
    if (reason == loaded && std::wcscmp(notification->name->Buffer, L"pagevalidatefilter.dll") == 0)
    {
        Watch::Get().Follow(notification->module, notification->size);
    }
}

extern "C" LONG NTAPI LdrRegisterDllNotification(ULONG flags,
                                                 decltype(OnModule)* callback,
                                                 void* context,
                                                 void** registration);

std::atomic<std::size_t> g_run{0};
std::atomic<std::size_t> g_point{0};

void PrintStack()
{
    std::printf("    addr2line -fCe pagevalidatefilter.dll");
    for (const std::uintptr_t place : Watch::Get().FailingStack())
    {
        std::printf(" %llx", static_cast<unsigned long long>(place));
    }
    std::printf("\n");
    std::fflush(stdout);
}

[[noreturn]] void Die(const char* how)
{
    std::printf("point %zu %s\n", g_point.load(), how);
    PrintStack();
    ExitProcess(2);
}

/// Ends the program if a job hangs.
void WatchForHanging()
{
    for (std::size_t seen = 0;; seen = g_run)
    {
        std::this_thread::sleep_for(std::chrono::seconds(60));
        if (seen == g_run)
        {
            Die("hangs");
        }
    }
}

// All jobs of a run of this program have the same kind of streams.
bool g_areStreamsShort = false;

Outcome Run(std::size_t point = 0, bool isForGood = false)
{
    const sweep::Fault fault{point, isForGood, g_areStreamsShort};
    ++g_run;
    g_point = fault.point;
    return sweep::RunJob(fault);
}

void PrintFaults(const std::string& of, const std::vector<std::string>& faults)
{
    std::printf("%s\n", of.c_str());
    for (const std::string& fault : faults)
    {
        std::printf("    %s\n", fault.c_str());
    }
}

/// The text that describes a point in messages.
std::string Describe(std::size_t number, bool isForGood, const Watch::Point& point)
{
    return "point " + std::to_string(number) + (isForGood ? " for good, " : ", ") + point.Name() +
           (point.isAgain ? ", called again" : "");
}

/// Returns 0 if the job has the expected outcome, else 1.
int RunPoint(std::size_t number, bool isForGood, const Outcome& good)
{
    const Watch::Point& point = good.points[number - 1];
    const auto faults = sweep::Judge(Run(number, isForGood), good, point);
    if (!faults.empty())
    {
        PrintFaults(Describe(number, isForGood, point) + ":", faults);
        PrintStack();
    }
    return faults.empty() ? 0 : 1;
}

/// Points of one kind have the same expected outcome.
std::string KindOf(const Watch::Point& point)
{
    return point.Name() + ' ' + point.stage + (point.isAgain ? " again" : "");
}

/// Returns the number of failing runs.
int Sweep(const Options& options, const Outcome& good)
{
    int failing = 0;
    int runs = 0;
    std::map<std::string, std::size_t> sizes;
    for (const Watch::Point& point : good.points)
    {
        ++sizes[KindOf(point)];
    }
    std::set<std::string> seen;
    std::set<const sweep::Exception*> met;
    for (std::size_t number = options.first; number <= good.points.size(); number += options.step)
    {
        const Watch::Point& point = good.points[number - 1];
        const std::string kind = KindOf(point);
        const bool isNew = seen.insert(kind).second;
        if (options.isSample && !isNew && sizes[kind] > kSmallKind && number % kSampleStep != 0)
        {
            continue;
        }
        met.insert(sweep::FindException(point));
        failing += RunPoint(number, false, good);
        ++runs;
        if (point.function->failing == sweep::Failing::NoMemory && number % kForGoodStep == 0)
        {
            failing += RunPoint(number, true, good);
            ++runs;
        }
    }
    for (const sweep::Exception& exception : sweep::Exceptions())
    {
        if (options.step == 1 && !met.contains(&exception))
        {
            std::printf("docs/errors.md speaks of what does not happen: %s\n", exception.row.c_str());
            ++failing;
        }
    }
    std::printf("%zu points, %d jobs, %d of them failing\n", good.points.size(), runs, failing);
    return failing;
}

Options Parse(std::vector<std::string> arguments)
{
    Options options;
    options.areStreamsShort = std::erase(arguments, "--short") != 0;
    const std::string mode = arguments.empty() ? "" : arguments.front();
    options.isSample = mode == "--sample";
    options.isForGood = mode == "--point" && arguments.back() == "--for-good";
    options.point = mode == "--point" ? std::stoul(arguments.at(1)) : 0;
    if (mode == "--part")
    {
        options.first = std::stoul(arguments.at(1));
        options.step = std::stoul(arguments.at(2));
    }
    return options;
}
} // namespace

/// faultsweep                      every point faultsweep --part I N           points I, I + N and so on: for
/// N programs at once faultsweep --sample             all points of kinds with few points, one of every other
/// kind, and a few more faultsweep --point N [--for-good]   this point, with its description; with every
/// later allocation failing With --short, streams read and write a few bytes in one call.
int main(int argc, char** argv)
{
    const Options options = Parse({argv + 1, argv + argc});
    LoadLibraryW(OFFLINE_TICKET_LIBRARY);
    CO_MTA_USAGE_COOKIE cookie = nullptr;
    CoIncrementMTAUsage(&cookie);
    void* registration = nullptr;
    LdrRegisterDllNotification(0, &OnModule, nullptr, &registration);
    SetUnhandledExceptionFilter([](EXCEPTION_POINTERS*) -> LONG { Die("crashes"); });
    std::thread(&WatchForHanging).detach();

    // The first job allocates what the system's libraries keep.
    const Outcome first = Run();
    g_areStreamsShort = options.areStreamsShort;
    Outcome good = first.faults.empty() ? Run() : first;
    if (good.written != first.written)
    {
        good.faults.emplace_back("other bytes are written through short streams");
    }
    if (good.result != S_OK || !good.faults.empty() || options.point > good.points.size())
    {
        PrintFaults("without a failure:", good.faults);
        return 1;
    }
    if (options.point != 0)
    {
        const int failing = RunPoint(options.point, options.isForGood, good);
        const std::string what = Describe(options.point, options.isForGood, good.points[options.point - 1]);
        std::printf("%s: %s\n", what.c_str(), failing == 0 ? "holds" : "fails");
        PrintStack();
        return failing;
    }
    return Sweep(options, good) == 0 ? 0 : 1;
}
