#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "base/utility/safecoinit.h"
#include "machines/stress/job.h"

namespace stress
{
namespace
{
using Seen = std::vector<std::string>;

constexpr std::array kKinds = {
    JobKind{"ISOA4", "Portrait", L"", 7, nullptr},
    JobKind{"ISOA4", "Landscape", L"ns0000", 1, "devices/uneven.xml"},
    JobKind{"ISOA5", "ReversePortrait", L"", 'L', nullptr},
    JobKind{"ISOA5", "ReverseLandscape", L"ns0000", 7, "devices/uneven.xml"},
    JobKind{"NorthAmericaLetter", "Landscape", L"", 1, nullptr},
    JobKind{"NorthAmericaLegal", "Portrait", L"ns0000", 'L', nullptr},
    JobKind{"JISB5", "Landscape", L"", 2, nullptr},
    JobKind{"NorthAmericaExecutive", "Landscape", L"ns0000", 7, nullptr},
};

Seen RunAlone(const JobKind& kind)
{
    const base::utility::SafeCoInit com;
    Job job(kind);
    EXPECT_EQ(job.Run(), S_OK);
    return job.Seen();
}

/// What each kind of job gives, one after the other.
std::array<Seen, kKinds.size()> RunAllAlone()
{
    std::array<Seen, kKinds.size()> alone;
    std::transform(kKinds.begin(), kKinds.end(), alone.begin(), RunAlone);
    return alone;
}

TEST(Concurrency, JobsAtOnceGiveWhatEachGivesAlone)
{
    const auto alone = RunAllAlone();
    EXPECT_EQ(std::set<Seen>(alone.begin(), alone.end()).size(), kKinds.size()) << "not all jobs differ";

    const int rounds = Amount(100, 5);
    std::set<std::string> newParts;
    std::size_t newPartCount = 0;
    for (int round = 0; round < rounds; ++round)
    {
        std::array<std::vector<std::string>, kKinds.size()> names;
        {
            std::vector<std::jthread> threads;
            for (std::size_t kind = 0; kind < kKinds.size(); ++kind)
            {
                threads.emplace_back([&, kind] {
                    const base::utility::SafeCoInit com;
                    Job job(kKinds[kind]);
                    EXPECT_EQ(job.Run(), S_OK);
                    EXPECT_EQ(job.Seen(), alone[kind]) << "kind " << kind;
                    names[kind] = job.pipeline.consumer->newPartNames;
                });
            }
        }
        for (const auto& ofJob : names)
        {
            newPartCount += ofJob.size();
            newParts.insert(ofJob.begin(), ofJob.end());
        }
        ASSERT_TRUE(Module::Get().IsIdle());
    }
    EXPECT_EQ(newParts.size(), newPartCount);
    std::printf(
        "stress: %d rounds of %zu jobs at once, %zu new ticket parts\n", rounds, kKinds.size(), newPartCount);
}

/// Runs a job that another thread shuts down when so many calls have been made, or when it is through.
/// Returns whether it was cut short.
bool RunAndShutDown(const JobKind& kind, std::size_t moment, const Seen& alone)
{
    const base::utility::SafeCoInit com;
    Job job(kind);
    support::PipelineRecord& record = job.pipeline.record;
    std::atomic<bool> isThrough{false};
    DWORD stopper = 0;
    std::jthread stop([&, filter = job.filter]() mutable {
        const base::utility::SafeCoInit comOfThread;
        stopper = GetCurrentThreadId();
        while (record.Size() < moment && !isThrough)
        {
            std::this_thread::yield();
        }
        record.Cancel();
        EXPECT_EQ(filter->ShutdownOperation(), S_OK);
        EXPECT_FALSE(support::IsThreadImpersonating());
        // Whichever thread comes last destroys the filter.
        filter = {};
    });
    const HRESULT hr = job.Run();
    job.filter = {};
    isThrough = true;
    stop.join();

    const auto calls = record.Calls();
    const auto count = [&](const std::string& name, bool byStopper) {
        return std::count_if(calls.begin(), calls.end(), [&](const auto& call) {
            return call.name == name && (call.threadId == stopper) == byStopper;
        });
    };
    const bool isCut =
        std::any_of(calls.begin(), calls.end(), [](const auto& call) { return FAILED(call.refusal); });
    EXPECT_EQ(hr, isCut ? E_ABORT : S_OK);
    EXPECT_EQ(job.pipeline.control->reasons, std::vector<HRESULT>(isCut ? 1 : 0, E_ABORT));
    // The operation closes the sender at its end, and the other thread once it has one.
    EXPECT_EQ(count("CloseSender", false), 1);
    EXPECT_LE(count("CloseSender", true), 1);
    EXPECT_EQ(count("FilterFinished", true), 1);
    EXPECT_EQ(Module::Get().countOpenProviders(), 0U);
    if (!isCut)
    {
        Seen seen = job.Seen();
        std::erase(seen, "FilterFinished");
        Seen whole = alone;
        if (count("CloseSender", true) == 1)
        {
            std::erase(seen, "CloseSender");
            std::erase(whole, "CloseSender");
        }
        EXPECT_EQ(seen, whole);
    }
    return isCut;
}

TEST(Concurrency, ShutdownAtAnyMomentLeavesNothingBehind)
{
    const char* const given = std::getenv("STRESS_SEED");
    const unsigned seed =
        given != nullptr ? static_cast<unsigned>(std::stoul(given)) : std::random_device{}();
    std::printf("stress: seed %u (STRESS_SEED repeats it)\n", seed);
    std::mt19937 random(seed);

    const auto allAlone = RunAllAlone();
    const int shutdowns = Amount(500, 25);
    int cut = 0;
    for (int round = 0; round < shutdowns; ++round)
    {
        const std::size_t index = static_cast<std::size_t>(round) % kKinds.size();
        const JobKind& kind = kKinds[index];
        const Seen& alone = allAlone[index];
        // The bytes of the streams make up for more calls than there are names.
        const std::size_t moment = std::uniform_int_distribution<std::size_t>(0, 2 * alone.size())(random);
        SCOPED_TRACE("round " + std::to_string(round) + ", shut down at call " + std::to_string(moment));
        cut += RunAndShutDown(kind, moment, alone) ? 1 : 0;
        ASSERT_TRUE(Module::Get().IsIdle());
        EXPECT_EQ(RunAlone(kind), alone);
        if (::testing::Test::HasFailure())
        {
            break;
        }
    }
    std::printf("stress: %d shutdowns at random moments, %d of them cut the job short\n", shutdowns, cut);
    EXPECT_GT(cut, 0);
    EXPECT_LT(cut, shutdowns);
}
} // namespace
} // namespace stress
