#include <string>

#include <gtest/gtest.h>

#include "base/io/printreadstreamtoistream.h"
#include "base/io/printwritestreamtoistream.h"
#include "support/failures.h"
#include "support/printstreams.h"

namespace base::io
{
namespace
{
using support::Answering;
using utility::ComPtr;
using utility::MakeCom;

struct Description : STATSTG
{
    Description() : STATSTG{} {}
    Description(const Description&) = delete;
    Description& operator=(const Description&) = delete;
    ~Description() { CoTaskMemFree(pwcsName); }
};

class PrintStreamAdapters : public ::testing::Test
{
protected:
    const ComPtr<support::MemoryReadStream> reader = MakeCom<support::MemoryReadStream>("0123456789");
    const ComPtr<support::MemoryWriteStream> writer = MakeCom<support::MemoryWriteStream>();
    const ComPtr<PrintReadStreamToIStream> reading = MakeCom<PrintReadStreamToIStream>(reader.Get());
    const ComPtr<PrintWriteStreamToIStream> writing = MakeCom<PrintWriteStreamToIStream>(writer.Get());
    IStream* const both[2] = {reading.Get(), writing.Get()};
    char buffer[4] = {};
    ULONG count = 77;
};

TEST_F(PrintStreamAdapters, HoldToTheStreamContractInTheirDirectionOnly)
{
    EXPECT_EQ(support::HresultOf([] { MakeCom<PrintReadStreamToIStream>(nullptr); }), E_POINTER);
    EXPECT_EQ(support::HresultOf([] { MakeCom<PrintWriteStreamToIStream>(nullptr); }), E_POINTER);
    const ULARGE_INTEGER zero{};
    for (IStream* stream : both)
    {
        for (const HRESULT hr : {stream->SetSize(zero),
                                 stream->CopyTo(nullptr, zero, nullptr, nullptr),
                                 stream->Commit(0),
                                 stream->Revert(),
                                 stream->LockRegion(zero, zero, 0),
                                 stream->UnlockRegion(zero, zero, 0),
                                 stream->Clone(nullptr)})
        {
            EXPECT_EQ(hr, E_NOTIMPL);
        }
        EXPECT_EQ(stream->Stat(nullptr, STATFLAG_DEFAULT), E_POINTER);
    }
    EXPECT_EQ(reading->Write(buffer, 1, &count), E_NOTIMPL);
    EXPECT_EQ(writing->Read(buffer, 1, &count), E_NOTIMPL);
    EXPECT_EQ(writing->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr), E_NOTIMPL);
    EXPECT_EQ(reading->Read(nullptr, 1, &count), E_POINTER);
    EXPECT_EQ(reading->Read(buffer, 1, nullptr), E_POINTER);
    EXPECT_EQ(writing->Write(nullptr, 1, &count), E_POINTER);
    EXPECT_EQ(writing->Write(buffer, 1, nullptr), E_POINTER);
}

TEST_F(PrintStreamAdapters, ReadAndSeekThroughToThePrintStream)
{
    EXPECT_EQ(reading->Read(buffer, 0, &count), S_OK);
    EXPECT_EQ(count, 77U);
    EXPECT_EQ(reader->reads, 0);
    EXPECT_EQ(reading->Read(buffer, 4, &count), S_OK);
    EXPECT_EQ(std::string(buffer, count), "0123");

    ULARGE_INTEGER position{};
    EXPECT_EQ(reading->Seek(LARGE_INTEGER{.QuadPart = -3}, STREAM_SEEK_END, &position), S_OK);
    EXPECT_EQ(position.QuadPart, 7U);
    EXPECT_EQ(reading->Seek(LARGE_INTEGER{.QuadPart = 1}, STREAM_SEEK_CUR, nullptr), S_OK);
    EXPECT_EQ(reader->position, 8);

    reader->position = 5;
    reader->longest = 3;
    EXPECT_EQ(reading->Read(buffer, 4, &count), S_OK);
    EXPECT_EQ(std::string(buffer, count), "5678");
    reader->reads = 0;
    EXPECT_EQ(reading->Read(buffer, 4, &count), S_OK);
    EXPECT_EQ(std::string(buffer, count), "9");
    // One read was enough: the stream had reported its end.
    EXPECT_EQ(reader->reads, 1);

    reader->gate = Answering(E_ACCESSDENIED);
    EXPECT_EQ(reading->Read(buffer, 1, &count), E_ACCESSDENIED);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(reading->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, &position), E_ACCESSDENIED);
    EXPECT_EQ(position.QuadPart, 7U);
}

TEST_F(PrintStreamAdapters, DescribeAReaderByMeasuringItOnceUnlessItIsEmpty)
{
    reader->position = 4;
    // Fails at each of the three seeks of a measurement.
    for (const int failing : {1, 3, 6})
    {
        Description description;
        reader->gate = [&](const std::string&) { return reader->seeks == failing ? E_ABORT : S_OK; };
        EXPECT_EQ(reading->Stat(&description, STATFLAG_NONAME), E_ABORT);
    }
    reader->position = 4;
    for (const DWORD flag : {STATFLAG_DEFAULT, STATFLAG_NONAME})
    {
        Description description;
        ASSERT_EQ(reading->Stat(&description, flag), S_OK);
        EXPECT_EQ(description.type, static_cast<DWORD>(STGTY_STREAM));
        EXPECT_EQ(description.cbSize.QuadPart, 10U);
        EXPECT_EQ(description.grfMode, 0x20U);
        EXPECT_EQ(description.grfLocksSupported, 1U);
        EXPECT_STREQ(description.pwcsName, flag == STATFLAG_DEFAULT ? L"PrintReadStream" : nullptr);
        EXPECT_EQ(reader->position, 4);
        EXPECT_EQ(reader->seeks, 9);
    }
    const auto empty = MakeCom<support::MemoryReadStream>("");
    const auto stream = MakeCom<PrintReadStreamToIStream>(empty.Get());
    for (const int seeks : {3, 6})
    {
        Description description;
        ASSERT_EQ(stream->Stat(&description, STATFLAG_NONAME), S_OK);
        EXPECT_EQ(empty->seeks, seeks);
    }
}

TEST_F(PrintStreamAdapters, CountWhatAWriterTookAndKeepItsFirstFailure)
{
    const struct
    {
        std::string text;
        HRESULT answer;
        ULONG longest;
        ULONG taken;
        HRESULT kept;
    } writes[] = {
        {"", S_OK, 9, 0, S_OK},
        {"abc", S_OK, 9, 3, S_OK},
        {"defgh", S_OK, 2, 5, S_OK},
        {"ij", S_OK, 0, 0, STG_E_MEDIUMFULL},
        {"klmn", E_ACCESSDENIED, 1, 1, STG_E_MEDIUMFULL},
    };
    for (const auto& [text, answer, longest, taken, kept] : writes)
    {
        writer->writeResult = answer;
        writer->longest = longest;
        count = 0;
        EXPECT_EQ(writing->Write(text.data(), static_cast<ULONG>(text.size()), &count), answer);
        EXPECT_EQ(count, taken) << text;
        EXPECT_EQ(writing->GetResult(), kept) << text;
    }
    EXPECT_EQ(writer->bytes, "abcdefghk");
    EXPECT_EQ(writer->closes, 0);
    Description description;
    ASSERT_EQ(writing->Stat(&description, STATFLAG_DEFAULT), S_OK);
    EXPECT_EQ(description.cbSize.QuadPart, 9U);
    EXPECT_STREQ(description.pwcsName, L"PrintWriteStream");

    // A stream that fails may not set the count.
    writer->gate = Answering(E_ABORT);
    const auto failing = MakeCom<PrintWriteStreamToIStream>(writer.Get());
    EXPECT_EQ(failing->Write("f", 1, &count), E_ABORT);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(failing->GetResult(), E_ABORT);
}

TEST_F(PrintStreamAdapters, StampAccessAndNothingElse)
{
    Sleep(30);
    FILETIME later;
    ASSERT_EQ(CoFileTimeNow(&later), S_OK);
    EXPECT_EQ(reading->Read(buffer, 0, &count), S_OK);
    EXPECT_EQ(writing->Write("x", 1, &count), S_OK);
    for (IStream* stream : both)
    {
        Description description;
        ASSERT_EQ(stream->Stat(&description, STATFLAG_NONAME), S_OK);
        EXPECT_GE(CompareFileTime(&description.atime, &later), 0);
        EXPECT_LT(CompareFileTime(&description.ctime, &later), 0);
        EXPECT_LT(CompareFileTime(&description.mtime, &later), 0);
    }
}
} // namespace
} // namespace base::io
