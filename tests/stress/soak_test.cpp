#include <cstdio>
#include <map>
#include <regex>
#include <string>

#include <gtest/gtest.h>

#include "base/utility/safecoinit.h"
#include "stress/job.h"
#include "support/heap.h"

#include <psapi.h>

namespace stress
{
namespace
{
/// What the process holds at a moment.
struct Holdings
{
    ULONG handles;
    std::size_t privateBytes;
    tests::HeapUse heap;
    int objects;
    /// The attributes with a namespace that were made so far.
    std::size_t attributes;
};

/// Wine 8 answers 0 for the count; but it gives out the lowest number that is free, so that a fresh handle's
/// number tells of those that were left open.
ULONG CountHandles()
{
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    HANDLE fresh = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    CloseHandle(fresh);
    return count == 0 ? HandleToULong(fresh) / 4 : count;
}

Holdings MeasureHoldings(std::size_t attributes)
{
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof(memory));
    const int objects = support::Pipeline::CountObjects();
    return {CountHandles(), memory.PagefileUsage, tests::MeasureHeaps(), objects, attributes};
}

/// How many attributes of a ticket have a namespace.
std::size_t CountTypes(const std::string& ticket)
{
    const std::regex type(" xsi:type=");
    return static_cast<std::size_t>(
        std::distance(std::sregex_iterator(ticket.begin(), ticket.end(), type), {}));
}

/// One job, whose pages are made as they are asked for and forgotten when the next one is.
class LongJob
{
public:
    explicit LongJob(int pages) : m_pages(pages)
    {
        m_pipeline.driverBag->prefix = base::utility::Bstr(L"ns0000");
        m_pipeline.Add<support::SequencePart>("sequence");
        m_pipeline.Add<support::DocumentPart>("document");
        m_pipeline.provider->beforePart = [this] { Step(); };
    }

    HRESULT Run()
    {
        EXPECT_EQ(m_pipeline.Initialize(*m_filter), S_OK);
        return m_filter->StartOperation();
    }

    std::map<int, Holdings> holdings;
    int sent = 0;
    int written = 0;

private:
    void Step()
    {
        support::PipelineRecord& record = m_pipeline.record;
        sent += record.Count("SendFixedPage page");
        for (const auto& stream : record.writeStreams)
        {
            EXPECT_EQ(stream->closes, 1);
            ++written;
            m_attributes += CountTypes(stream->bytes);
        }
        record.Clear();
        m_pipeline.consumer->newPartNames.clear();
        if (!m_pipeline.provider->parts.empty())
        {
            return;
        }
        if (m_made == 100 || m_made == 1000 || m_made == m_pages)
        {
            holdings.emplace(m_made, MeasureHoldings(m_attributes));
        }
        if (m_made < m_pages)
        {
            // Passed on, turned, refitted, and turned and refitted.
            const std::string tickets[] = {
                Oriented("Portrait"), Oriented("Landscape"), TooLarge("Portrait"), TooLarge("Landscape")};
            m_pipeline.Add<support::PagePart>("page", PageOf(std::to_string(m_made)), tickets[m_made % 4]);
            ++m_made;
        }
    }

    int m_pages;
    int m_made = 0;
    std::size_t m_attributes = 0;
    support::Pipeline m_pipeline{support::Ticket(support::MediaFeature("ISOA4"))};
    base::utility::ComPtr<IPrintPipelineFilter> m_filter =
        Module::Get().filters.CreateFilter(Module::Get().trace);
};

TEST(Soak, ALongJobHoldsNoMoreAtItsEndThanAfterItsFirstPages)
{
    // A page may keep nothing in the long run. The system's caches get a little room, and MSXML in Wine 8
    // what it never frees of an attribute with a namespace: three blocks.
    constexpr ULONG handleRoom = 2;
    constexpr std::size_t blockRoom = 20;
    constexpr std::size_t byteRoom = 2048;
    constexpr std::size_t privateRoom = 1'048'576;
    constexpr std::size_t blocksOfAttribute = 3;
    constexpr std::size_t bytesOfAttribute = 94;
    constexpr std::size_t privateOfAttribute = 190;

    const int pages = Amount(10'000, 500);
    const base::utility::SafeCoInit com;
    {
        LongJob job(pages);
        EXPECT_EQ(job.Run(), S_OK);
        EXPECT_EQ(job.sent, pages);
        // A new ticket for three pages in four, new markup for two.
        EXPECT_EQ(job.written, pages / 4 * 5);
        const Holdings first = job.holdings.at(100);
        for (const auto& [page, now] : job.holdings)
        {
            std::printf("soak: page %5d: %lu handles, %zu KB private, %zu heap blocks of %zu bytes, %d "
                        "objects, %zu attributes\n",
                        page,
                        now.handles,
                        now.privateBytes / 1024,
                        now.heap.blocks,
                        now.heap.bytes,
                        now.objects,
                        now.attributes);
            const std::size_t made = now.attributes - first.attributes;
            EXPECT_LE(now.handles, first.handles + handleRoom);
            EXPECT_LE(now.heap.blocks, first.heap.blocks + blockRoom + made * blocksOfAttribute);
            EXPECT_LE(now.heap.bytes, first.heap.bytes + byteRoom + made * bytesOfAttribute);
            EXPECT_LE(now.privateBytes, first.privateBytes + privateRoom + made * privateOfAttribute);
            EXPECT_EQ(now.objects, first.objects);
        }
    }
    EXPECT_TRUE(Module::Get().IsIdle());
}
} // namespace
} // namespace stress
