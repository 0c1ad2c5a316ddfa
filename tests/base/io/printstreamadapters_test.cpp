#include <cstring>
#include <memory>
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
using support::MemoryReadStream;
using support::MemoryWriteStream;
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
    void TearDown() override
    {
        reading = {};
        writing = {};
        reader = {};
        writer = {};
        EXPECT_EQ(MemoryReadStream::Alive() + MemoryWriteStream::Alive(), 0);
    }

    HRESULT Seek(LONGLONG distance, DWORD origin, ULARGE_INTEGER* position = nullptr)
    {
        return reading->Seek(LARGE_INTEGER{.QuadPart = distance}, origin, position);
    }

    ComPtr<MemoryReadStream> reader = MakeCom<MemoryReadStream>("0123456789");
    ComPtr<MemoryWriteStream> writer = MakeCom<MemoryWriteStream>();
    ComPtr<PrintReadStreamToIStream> reading = MakeCom<PrintReadStreamToIStream>(reader.Get());
    ComPtr<PrintWriteStreamToIStream> writing = MakeCom<PrintWriteStreamToIStream>(writer.Get());
    char buffer[4] = {};
    ULONG count = 77;
};

TEST_F(PrintStreamAdapters, HoldToTheStreamContractInTheirDirectionOnly)
{
    EXPECT_EQ(tests::HresultOf([] { MakeCom<PrintReadStreamToIStream>(nullptr); }), E_POINTER);
    EXPECT_EQ(tests::HresultOf([] { MakeCom<PrintWriteStreamToIStream>(nullptr); }), E_POINTER);
    const ULARGE_INTEGER zero{};
    for (IStream* stream : {static_cast<IStream*>(reading.Get()), static_cast<IStream*>(writing.Get())})
    {
        void* result = stream;
        EXPECT_EQ(stream->QueryInterface(__uuidof(IPrintReadStream), &result), E_NOINTERFACE);
        EXPECT_EQ(result, nullptr);
        EXPECT_EQ(stream->QueryInterface(__uuidof(IStream), nullptr), E_POINTER);
        for (const IID& iid : {__uuidof(IUnknown), __uuidof(IStream)})
        {
            ComPtr<IStream> found;
            EXPECT_EQ(stream->QueryInterface(iid, found.ReceiveUntyped()), S_OK);
            EXPECT_EQ(found.Get(), stream);
        }
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
    EXPECT_EQ(Seek(-3, STREAM_SEEK_END, &position), S_OK);
    EXPECT_EQ(position.QuadPart, 7U);
    EXPECT_EQ(Seek(1, STREAM_SEEK_CUR), S_OK);
    EXPECT_EQ(reader->position, 8);

    reader->readResult = E_ACCESSDENIED;
    EXPECT_EQ(reading->Read(buffer, 1, &count), E_ACCESSDENIED);
    EXPECT_EQ(count, 0U);
    reader->seekResult = E_ABORT;
    EXPECT_EQ(Seek(0, STREAM_SEEK_SET, &position), E_ABORT);
    EXPECT_EQ(position.QuadPart, 7U);
}

TEST_F(PrintStreamAdapters, DescribeAReaderByMeasuringItOnceUnlessItIsEmpty)
{
    reader->position = 4;
    reader->seekResult = E_ABORT;
    for (const DWORD origin : {STREAM_SEEK_CUR, STREAM_SEEK_END})
    {
        reader->failingOrigin = origin;
        EXPECT_EQ(reading->Stat(std::make_unique<Description>().get(), STATFLAG_NONAME), E_ABORT);
    }
    reader->seekResult = S_OK;
    reader->seeks = 0;
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
        EXPECT_EQ(reader->seeks, 3);
    }
    const auto empty = MakeCom<MemoryReadStream>("");
    const auto stream = MakeCom<PrintReadStreamToIStream>(empty.Get());
    for (const int seeks : {3, 6})
    {
        Description description;
        ASSERT_EQ(stream->Stat(&description, STATFLAG_NONAME), S_OK);
        EXPECT_EQ(description.cbSize.QuadPart, 0U);
        EXPECT_EQ(empty->seeks, seeks);
    }
}

TEST_F(PrintStreamAdapters, CountWhatAWriterTookAndKeepItsFirstFailure)
{
    const struct
    {
        const char* text;
        HRESULT answer;
        ULONG taken;
        HRESULT kept;
    } writes[] = {
        {"", S_OK, 9, S_OK},
        {"abc", S_OK, 9, S_OK},
        {"defg", S_OK, 2, STG_E_MEDIUMFULL},
        {"hijk", E_ACCESSDENIED, 1, STG_E_MEDIUMFULL},
    };
    for (const auto& [text, answer, taken, kept] : writes)
    {
        writer->writeResult = answer;
        writer->longestWrite = writer->takenOnFailure = taken;
        EXPECT_EQ(writing->Write(text, static_cast<ULONG>(std::strlen(text)), &count), answer);
        EXPECT_EQ(writing->GetResult(), kept) << text;
    }
    EXPECT_EQ(writer->bytes, "abcdeh");
    EXPECT_EQ(writer->closes, 0);
    Description description;
    ASSERT_EQ(writing->Stat(&description, STATFLAG_DEFAULT), S_OK);
    EXPECT_EQ(description.cbSize.QuadPart, 6U);
    EXPECT_STREQ(description.pwcsName, L"PrintWriteStream");

    const auto failing = MakeCom<PrintWriteStreamToIStream>(writer.Get());
    EXPECT_EQ(failing->Write("f", 1, &count), E_ACCESSDENIED);
    EXPECT_EQ(failing->GetResult(), E_ACCESSDENIED);
}

TEST_F(PrintStreamAdapters, StampAccessAndNothingElse)
{
    Sleep(30);
    FILETIME later;
    ASSERT_EQ(CoFileTimeNow(&later), S_OK);
    EXPECT_EQ(reading->Read(buffer, 0, &count), S_OK);
    EXPECT_EQ(writing->Write("x", 1, &count), S_OK);
    for (IStream* stream : {static_cast<IStream*>(reading.Get()), static_cast<IStream*>(writing.Get())})
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
