#include <algorithm>
#include <cstdio>
#include <map>
#include <regex>
#include <string>

#include <gtest/gtest.h>

#include "base/utility/safecoinit.h"
#include "base/utility/variant.h"
#include "base/xml/xmlutility.h"
#include "machines/stress/job.h"
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

/// Makes one attribute with a namespace in a ticket, by the calls of DOM that the module makes.
void MakeAttribute()
{
    using base::utility::Bstr;
    using base::utility::ComPtr;
    const ComPtr<IXMLDOMDocument2> document = base::xml::XmlUtility::CreateDocument();
    const std::string ticket = support::Ticket(support::MediaFeature("ISOA3", 297000, 420000));
    VARIANT_BOOL loaded = VARIANT_FALSE;
    EXPECT_EQ(document->loadXML(Bstr(std::wstring(ticket.begin(), ticket.end())).Get(), &loaded), S_OK);
    ComPtr<IXMLDOMElement> root;
    EXPECT_EQ(document->get_documentElement(root.Receive()), S_OK);
    ComPtr<IXMLDOMNode> node;
    EXPECT_EQ(document->createNode(base::utility::Variant(LONG{NODE_ATTRIBUTE}).Get(),
                                   Bstr(L"xsi:type").Get(),
                                   Bstr(L"http://www.w3.org/2001/XMLSchema-instance").Get(),
                                   node.Receive()),
              S_OK);
    ComPtr<IXMLDOMAttribute> attribute;
    EXPECT_EQ(node->QueryInterface(__uuidof(IXMLDOMAttribute), attribute.ReceiveUntyped()), S_OK);
    EXPECT_EQ(attribute->put_value(base::utility::Variant(Bstr(L"xsd:integer")).Get()), S_OK);
    ComPtr<IXMLDOMAttribute> replaced;
    EXPECT_EQ(root->setAttributeNode(attribute.Get(), replaced.Receive()), S_OK);
}

/// What the platform keeps of attributes with a namespace when their document is gone, without the module.
tests::HeapUse MeasureKept(int attributes)
{
    const auto make = [](int count) {
        for (int made = 0; made < count; ++made)
        {
            MakeAttribute();
        }
        return tests::MeasureHeaps();
    };
    const tests::HeapUse before = make(100);
    const tests::HeapUse after = make(attributes);
    // The system's caches may have let a few go.
    return {after.blocks - std::min(before.blocks, after.blocks),
            after.bytes - std::min(before.bytes, after.bytes)};
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
        m_pipeline.SetDriver(L"ns0000", 7);
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
    // A page may keep nothing in the long run. The system's caches get a little room, and MSXML what it keeps
    // of attributes without the module, too: in Wine 8 and 10 three blocks, 94 bytes, of each. The heap of
    // Wine 10 counts groups of small blocks, and a group stays as long as one of its blocks: at most three of
    // them.
    constexpr ULONG handleRoom = 2;
    constexpr std::size_t blockRoom = 20;
    constexpr std::size_t byteRoom = 2048;
    constexpr std::size_t privateRoom = 1'048'576;

    const int pages = Amount(10'000, 500);
    const base::utility::SafeCoInit com;
    constexpr int sample = 1000;
    const tests::HeapUse kept = MeasureKept(sample);
    std::printf("soak: %d attributes alone: %zu heap blocks of %zu bytes\n", sample, kept.blocks, kept.bytes);
    // A platform that frees attributes keeps a few blocks in its caches.
    const std::size_t blocksOfAttribute = kept.blocks < sample / 2 ? 0 : 3;
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
            const std::size_t blocks = made * blocksOfAttribute;
            const std::size_t bytes = blocks == 0 ? 0 : blocks * kept.bytes / kept.blocks;
            EXPECT_LE(now.handles, first.handles + handleRoom);
            EXPECT_LE(now.heap.blocks, first.heap.blocks + blockRoom + blocks);
            EXPECT_LE(now.heap.bytes, first.heap.bytes + byteRoom + bytes);
            // A small block takes as much again for its header and its alignment.
            EXPECT_LE(now.privateBytes, first.privateBytes + privateRoom + 2 * bytes);
            EXPECT_EQ(now.objects, first.objects);
        }
    }
    EXPECT_TRUE(Module::Get().IsIdle());
}
} // namespace
} // namespace stress
