#include <cwchar>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "base/io/printreadstreamtoistream.h"
#include "base/io/printwritestreamtoistream.h"
#include "base/logging/errors.h"
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
        m_reader = {};
        m_writer = {};
        EXPECT_EQ(MemoryReadStream::Alive(), 0);
        EXPECT_EQ(MemoryWriteStream::Alive(), 0);
    }

    ComPtr<MemoryReadStream> m_reader = MakeCom<MemoryReadStream>("0123456789");
    ComPtr<MemoryWriteStream> m_writer = MakeCom<MemoryWriteStream>();
};

LARGE_INTEGER Move(LONGLONG distance)
{
    LARGE_INTEGER move;
    move.QuadPart = distance;
    return move;
}

void ExpectTheCommonContract(IStream* stream)
{
    void* result = stream;
    EXPECT_EQ(stream->QueryInterface(__uuidof(IPrintReadStream), &result), E_NOINTERFACE);
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(stream->QueryInterface(__uuidof(IStream), nullptr), E_POINTER);
    for (const IID& iid : {__uuidof(IUnknown), __uuidof(IStream)})
    {
        ComPtr<IUnknown> found;
        EXPECT_EQ(stream->QueryInterface(iid, found.ReceiveUntyped()), S_OK);
        EXPECT_EQ(static_cast<void*>(found.Get()), static_cast<void*>(stream));
    }
    const ULARGE_INTEGER zero{};
    EXPECT_EQ(stream->SetSize(zero), E_NOTIMPL);
    EXPECT_EQ(stream->CopyTo(nullptr, zero, nullptr, nullptr), E_NOTIMPL);
    EXPECT_EQ(stream->Commit(0), E_NOTIMPL);
    EXPECT_EQ(stream->Revert(), E_NOTIMPL);
    EXPECT_EQ(stream->LockRegion(zero, zero, 0), E_NOTIMPL);
    EXPECT_EQ(stream->UnlockRegion(zero, zero, 0), E_NOTIMPL);
    EXPECT_EQ(stream->Clone(nullptr), E_NOTIMPL);
    EXPECT_EQ(stream->Stat(nullptr, STATFLAG_DEFAULT), E_POINTER);
}

template <typename Adapter>
HRESULT ConstructionFailure()
{
    try
    {
        MakeCom<Adapter>(nullptr);
    }
    catch (const exception::HresultError& error)
    {
        return error.GetHresult();
    }
    return S_OK;
}

TEST_F(PrintStreamAdapters, HoldToTheStreamContractInTheirDirectionOnly)
{
    EXPECT_EQ(ConstructionFailure<PrintReadStreamToIStream>(), E_POINTER);
    EXPECT_EQ(ConstructionFailure<PrintWriteStreamToIStream>(), E_POINTER);

    const auto reading = MakeCom<PrintReadStreamToIStream>(m_reader.Get());
    const auto writing = MakeCom<PrintWriteStreamToIStream>(m_writer.Get());
    ExpectTheCommonContract(reading.Get());
    ExpectTheCommonContract(writing.Get());

    char buffer[4] = {};
    ULONG count = 0;
    EXPECT_EQ(reading->Write(buffer, 1, &count), E_NOTIMPL);
    EXPECT_EQ(writing->Read(buffer, 1, &count), E_NOTIMPL);
    EXPECT_EQ(writing->Seek(Move(0), STREAM_SEEK_SET, nullptr), E_NOTIMPL);
    EXPECT_EQ(reading->Read(nullptr, 1, &count), E_POINTER);
    EXPECT_EQ(reading->Read(buffer, 1, nullptr), E_POINTER);
    EXPECT_EQ(writing->Write(nullptr, 1, &count), E_POINTER);
    EXPECT_EQ(writing->Write(buffer, 1, nullptr), E_POINTER);
}

TEST_F(PrintStreamAdapters, ReadAndSeekThroughToThePrintStream)
{
    const auto stream = MakeCom<PrintReadStreamToIStream>(m_reader.Get());
    char buffer[4] = {};
    ULONG count = 77;
    EXPECT_EQ(stream->Read(buffer, 0, &count), S_OK);
    EXPECT_EQ(count, 77U);
    EXPECT_EQ(m_reader->reads, 0);
    EXPECT_EQ(stream->Read(buffer, 4, &count), S_OK);
    EXPECT_EQ(std::string(buffer, count), "0123");

    ULARGE_INTEGER position{};
    EXPECT_EQ(stream->Seek(Move(-3), STREAM_SEEK_END, &position), S_OK);
    EXPECT_EQ(position.QuadPart, 7U);
    EXPECT_EQ(stream->Seek(Move(1), STREAM_SEEK_CUR, nullptr), S_OK);
    EXPECT_EQ(m_reader->position, 8);

    m_reader->readResult = E_ACCESSDENIED;
    EXPECT_EQ(stream->Read(buffer, 1, &count), E_ACCESSDENIED);
    EXPECT_EQ(count, 0U);
    m_reader->seekResult = E_ABORT;
    EXPECT_EQ(stream->Seek(Move(0), STREAM_SEEK_SET, &position), E_ABORT);
    EXPECT_EQ(position.QuadPart, 7U);
}

TEST_F(PrintStreamAdapters, DescribeAReaderByMeasuringItOnce)
{
    m_reader->position = 4;
    const auto stream = MakeCom<PrintReadStreamToIStream>(m_reader.Get());
    m_reader->seekResult = E_ABORT;
    Description failed;
    for (const DWORD origin : {STREAM_SEEK_CUR, STREAM_SEEK_END})
    {
        m_reader->failingOrigin = origin;
        EXPECT_EQ(stream->Stat(&failed, STATFLAG_NONAME), E_ABORT);
    }
    m_reader->seekResult = S_OK;
    m_reader->seeks = 0;

    for (const int round : {1, 2})
    {
        Description description;
        ASSERT_EQ(stream->Stat(&description, STATFLAG_DEFAULT), S_OK);
        EXPECT_STREQ(description.pwcsName, L"PrintReadStream");
        EXPECT_EQ(description.type, static_cast<DWORD>(STGTY_STREAM));
        EXPECT_EQ(description.cbSize.QuadPart, 10U);
        EXPECT_EQ(description.grfMode, 0x20U);
        EXPECT_EQ(description.grfLocksSupported, 1U);
        EXPECT_EQ(description.clsid, GUID_NULL);
        EXPECT_EQ(description.grfStateBits, 0U);
        EXPECT_EQ(m_reader->position, 4) << "round " << round;
        EXPECT_EQ(m_reader->seeks, 3) << "round " << round;
    }
    Description unnamed;
    ASSERT_EQ(stream->Stat(&unnamed, STATFLAG_NONAME), S_OK);
    EXPECT_EQ(unnamed.pwcsName, nullptr);
}

TEST_F(PrintStreamAdapters, MeasureAnEmptyReaderEachTime)
{
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

TEST_F(PrintStreamAdapters, CountWhatAWriterTookAlsoWhenItFailed)
{
    const auto stream = MakeCom<PrintWriteStreamToIStream>(m_writer.Get());
    ULONG written = 0;
    EXPECT_EQ(stream->Write("abc", 3, &written), S_OK);
    EXPECT_EQ(stream->Write("defgh", 5, &written), S_OK);
    EXPECT_EQ(stream->Write("none", 0, &written), S_OK);
    EXPECT_EQ(m_writer->bytes, "abcdefgh");

    m_writer->writeResult = STG_E_MEDIUMFULL;
    m_writer->takenOnFailure = 2;
    EXPECT_EQ(stream->Write("ijkl", 4, &written), STG_E_MEDIUMFULL);

    Description description;
    ASSERT_EQ(stream->Stat(&description, STATFLAG_DEFAULT), S_OK);
    EXPECT_EQ(description.cbSize.QuadPart, 10U);
    EXPECT_STREQ(description.pwcsName, L"PrintWriteStream");
    EXPECT_EQ(m_writer->closes, 0);
}

TEST_F(PrintStreamAdapters, RememberTheFirstWriteThatDidNotTakeEverything)
{
    const auto stream = MakeCom<PrintWriteStreamToIStream>(m_writer.Get());
    ULONG written = 0;
    EXPECT_EQ(stream->Write("abc", 3, &written), S_OK);
    EXPECT_EQ(stream->GetResult(), S_OK);
    m_writer->longestWrite = 2;
    EXPECT_EQ(stream->Write("def", 3, &written), S_OK);
    EXPECT_EQ(written, 2U);
    EXPECT_EQ(stream->GetResult(), STG_E_MEDIUMFULL);
    m_writer->writeResult = E_ACCESSDENIED;
    EXPECT_EQ(stream->Write("f", 1, &written), E_ACCESSDENIED);
    EXPECT_EQ(stream->GetResult(), STG_E_MEDIUMFULL);

    const auto failing = MakeCom<PrintWriteStreamToIStream>(m_writer.Get());
    EXPECT_EQ(failing->Write("f", 1, &written), E_ACCESSDENIED);
    EXPECT_EQ(failing->GetResult(), E_ACCESSDENIED);
}

TEST_F(PrintStreamAdapters, StampAccessAndNothingElse)
{
    const auto reading = MakeCom<PrintReadStreamToIStream>(m_reader.Get());
    const auto writing = MakeCom<PrintWriteStreamToIStream>(m_writer.Get());
    Sleep(30);
    FILETIME later;
    ASSERT_EQ(CoFileTimeNow(&later), S_OK);
    char byte = 0;
    ULONG count = 0;
    EXPECT_EQ(reading->Read(&byte, 0, &count), S_OK);
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
