#include "host/pipeline/printstreams.h"

#include <limits>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "base/utility/comptr.h"
#include "tests/host/testpackages.h"

namespace host::pipeline
{
namespace
{
using base::utility::MakeCom;

/// What one read gives, with a full stop where it tells the end.
std::string ReadSome(IPrintReadStream& stream, ULONG requested)
{
    char buffer[16] = {};
    ULONG read = 99;
    BOOL isEnd = 7;
    EXPECT_EQ(stream.ReadBytes(buffer, requested, &read, &isEnd), S_OK);
    return std::string(buffer, read) + (isEnd ? "." : "");
}

TEST(PartReadStream, TellsTheEndWithTheLastBytes)
{
    const auto stream = MakeCom<PartReadStream>("abcdefg");
    EXPECT_EQ(ReadSome(*stream, 2), "ab");
    EXPECT_EQ(ReadSome(*stream, 4), "cdef");
    EXPECT_EQ(ReadSome(*stream, 1), "g.");
    EXPECT_EQ(ReadSome(*stream, 10), ".");
    EXPECT_EQ(ReadSome(*MakeCom<PartReadStream>(""), 1), ".");
}

TEST(PartReadStream, SeeksFromEachOriginAndNotBeforeTheStart)
{
    const auto stream = MakeCom<PartReadStream>("abcdefg");
    constexpr LONGLONG farthest = std::numeric_limits<LONGLONG>::max();
    const struct
    {
        LONGLONG move;
        DWORD origin;
        HRESULT result;
        ULONGLONG position;
    } seeks[] = {
        {3, STREAM_SEEK_SET, S_OK, 3},
        {-2, STREAM_SEEK_CUR, S_OK, 1},
        {-2, STREAM_SEEK_CUR, HRESULT_FROM_WIN32(ERROR_NEGATIVE_SEEK), 1},
        {-1, STREAM_SEEK_END, S_OK, 6},
        {farthest, STREAM_SEEK_CUR, E_INVALIDARG, 6},
        {0, 3, E_INVALIDARG, 6},
        {9, STREAM_SEEK_END, S_OK, 16},
    };
    for (const auto& [move, origin, result, expected] : seeks)
    {
        ULONGLONG position = 0;
        EXPECT_EQ(stream->Seek(move, origin, nullptr), result) << move;
        EXPECT_EQ(stream->Seek(0, STREAM_SEEK_CUR, &position), S_OK);
        EXPECT_EQ(position, expected) << move;
    }
    EXPECT_EQ(ReadSome(*stream, 4), ".");
    EXPECT_EQ(stream->Seek(-1, STREAM_SEEK_END, nullptr), S_OK);
    EXPECT_EQ(ReadSome(*stream, 4), "g.");
}

TEST(PrintStreams, RefuseNullPointers)
{
    const auto reader = MakeCom<PartReadStream>("a");
    char buffer[1];
    ULONG count = 0;
    BOOL isEnd = FALSE;
    EXPECT_EQ(reader->ReadBytes(nullptr, 1, &count, &isEnd), E_POINTER);
    EXPECT_EQ(reader->ReadBytes(buffer, 1, nullptr, &isEnd), E_POINTER);
    EXPECT_EQ(reader->ReadBytes(buffer, 1, &count, nullptr), E_POINTER);
    CallTrace trace;
    const auto writer = MakeCom<PartWriteStream>(opc::PartContent(nullptr), trace);
    EXPECT_EQ(writer->WriteBytes(nullptr, 1, &count), E_POINTER);
    EXPECT_EQ(writer->WriteBytes("a", 1, nullptr), E_POINTER);
}

TEST(PartWriteStream, CollectsUntilItIsClosedAndCountsTheClosing)
{
    const OutputFolder folder;
    const auto spill = std::make_shared<opc::SpillFile>(folder / "target");
    CallTrace trace;
    const auto first = MakeCom<PartWriteStream>(opc::PartContent(spill), trace);
    const auto second = MakeCom<PartWriteStream>(opc::PartContent(spill), trace);
    std::string expected;
    ULONG written = 0;
    for (const char letter : {'a', 'b', 'c', 'd', 'e'})
    {
        const std::string bytes(50'000, letter);
        ASSERT_EQ(first->WriteBytes(bytes.data(), 50'000, &written), S_OK);
        EXPECT_EQ(written, 50'000U);
        ASSERT_EQ(second->WriteBytes(expected.data(), static_cast<ULONG>(expected.size()), &written), S_OK);
        expected += bytes;
    }
    EXPECT_EQ(first->CloseCount(), 0);
    first->Close();
    EXPECT_EQ(first->WriteBytes("x", 1, &written), E_UNEXPECTED);
    EXPECT_EQ(written, 0U);
    first->Close();
    EXPECT_EQ(first->CloseCount(), 2);

    // Read back in steps that meet the borders of what was spilled in turns.
    const opc::PartContent content = first->DetachContent();
    EXPECT_EQ(content.Size(), expected.size());
    std::string readBack;
    std::string buffer(30'001, '\0');
    while (const std::size_t count = content.Read(readBack.size(), buffer.data(), buffer.size()))
    {
        readBack.append(buffer, 0, count);
    }
    EXPECT_TRUE(readBack == expected);
}
} // namespace
} // namespace host::pipeline
