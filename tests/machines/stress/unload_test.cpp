#include <array>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "base/utility/safecoinit.h"
#include "machines/stress/job.h"
#include "support/heap.h"

// Here nothing may hold the module: each test loads it, and it is gone afterwards.
namespace stress
{
namespace
{
using host::pipeline::FilterModule;
using host::pipeline::LoadedLibrary;

/// What the process holds. Wine 8 counts neither handles nor TLS indexes, but gives out the lowest that is
/// free.
struct Holdings
{
    long long handles;
    long long tlsIndexes;
    long long heapBlocks;
    long long heapBytes;
};

Holdings MeasureHoldings()
{
    HANDLE handle = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    CloseHandle(handle);
    const DWORD index = TlsAlloc();
    TlsFree(index);
    const tests::HeapUse heap = tests::MeasureHeaps();
    return {static_cast<long long>(HandleToULong(handle)) / 4,
            index,
            static_cast<long long>(heap.blocks),
            static_cast<long long>(heap.bytes)};
}

Holdings operator-(const Holdings& one, const Holdings& other)
{
    return {one.handles - other.handles,
            one.tlsIndexes - other.tlsIndexes,
            one.heapBlocks - other.heapBlocks,
            one.heapBytes - other.heapBytes};
}

void RunTurnedPage(IPrintPipelineFilter& filter)
{
    support::Pipeline pipeline(support::Ticket(support::MediaFeature("ISOA4")));
    pipeline.Add<support::SequencePart>("sequence");
    pipeline.Add<support::DocumentPart>("document");
    pipeline.Add<support::PagePart>("page", PageOf("M 0,0 L 1,1"), Oriented("Landscape"));
    EXPECT_EQ(pipeline.Initialize(filter), S_OK);
    EXPECT_EQ(filter.StartOperation(), S_OK);
    EXPECT_EQ(pipeline.record.Count("SendFixedPage page"), 1);
}

/// Loads the module and runs a job on this thread and one on a thread that ends.
void LoadAndUse()
{
    const FilterModule module(support::FilterModulePath());
    host::pipeline::CallTrace trace;
    RunTurnedPage(*module.CreateFilter(trace));
    std::thread([&] { RunTurnedPage(*module.CreateFilter(trace)); }).join();
    EXPECT_TRUE(module.CanUnload());
}

/// The heap of Wine 10 begins to put blocks of a size into groups when 17 of them are in use, and counts a
/// group as one block of up to 32 KB, however few of its own are. Has it begun with every size before
/// anything is counted.
void SettleHeaps()
{
    constexpr std::size_t step = 16;
    constexpr std::size_t largest = 1024;
    constexpr std::size_t header = 8;
    for (HANDLE heap : tests::GetHeaps())
    {
        for (std::size_t size = step; size <= largest; size += step)
        {
            std::array<void*, 20> blocks;
            for (void*& block : blocks)
            {
                block = HeapAlloc(heap, 0, size - header);
            }
            for (void* block : blocks)
            {
                HeapFree(heap, 0, block);
            }
        }
    }
}

/// What the process holds more at the end than after half of the times: caches are full by then.
Holdings GrowthOf(const char* what, int times, bool isUnloaded)
{
    std::optional<FilterModule> kept;
    if (!isUnloaded)
    {
        kept.emplace(support::FilterModulePath());
    }
    Holdings first{};
    for (int time = 1; time <= times; ++time)
    {
        LoadAndUse();
        EXPECT_EQ(GetModuleHandleW(L"pagevalidatefilter.dll") == nullptr, isUnloaded);
        if (time == times / 2)
        {
            first = MeasureHoldings();
        }
    }
    const Holdings growth = MeasureHoldings() - first;
    std::printf("%s, %d times: %+lld handles, %+lld TLS indexes, %+lld heap blocks of %+lld bytes\n",
                what,
                times,
                growth.handles,
                growth.tlsIndexes,
                growth.heapBlocks,
                growth.heapBytes);
    return growth;
}

bool HasCom()
{
    APTTYPE type;
    APTTYPEQUALIFIER qualifier;
    return CoGetApartmentType(&type, &qualifier) != CO_E_NOTINITIALIZED;
}

// A released filter frees some 20 blocks of its own; a ticket's document has hundreds.
TEST(Unload, ReleasesAFilterWhereNothingElseBringsComUp)
{
    const LoadedLibrary tickets(OFFLINE_TICKET_LIBRARY);
    const FilterModule module(FILTER_MODULE);
    host::pipeline::CallTrace trace;
    auto filter = module.CreateFilter(trace);
    std::thread([&] {
        RunTurnedPage(*filter);
        EXPECT_FALSE(HasCom());
    }).join();
    const long long held = MeasureHoldings().heapBlocks;
    std::thread([&] { filter = {}; }).join();
    EXPECT_LT(held - MeasureHoldings().heapBlocks, 100) << "documents of COM that were not released in time";
    EXPECT_TRUE(module.CanUnload());
}

TEST(Unload, LeavesNothingBehind)
{
    // The system's libraries stay: winspool.drv in Wine 8 leaves a handle open each time that it goes.
    const LoadedLibrary libraries[] = {LoadedLibrary(OFFLINE_TICKET_LIBRARY),
                                       LoadedLibrary(L"winspool.drv"),
                                       LoadedLibrary(L"gdiplus.dll"),
                                       LoadedLibrary(L"msxml6.dll")};
    const base::utility::SafeCoInit com;
    SettleHeaps();
    const int times = Amount(2000, 60);
    // The DOM in Wine keeps memory of each job. What the module leaves comes on top.
    const Holdings kept = GrowthOf("loaded and used", times, false);
    const Holdings unloaded = GrowthOf("loaded, used and unloaded", times, true);
    constexpr long long blockRoom = 10;
    // Two or three groups: a thread may need one more than those before it.
    constexpr long long byteRoom = 16'384;
    EXPECT_LE(unloaded.handles, 0);
    EXPECT_LE(unloaded.tlsIndexes, 0);
    EXPECT_LE(unloaded.heapBlocks, kept.heapBlocks + blockRoom);
    EXPECT_LE(unloaded.heapBytes, kept.heapBytes + byteRoom);
}
} // namespace
} // namespace stress
