#include "base/io/printstreambuffer.h"

#include <istream>
#include <iterator>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "support/printstreams.h"
#include "support/thrown.h"

namespace base::io
{
namespace
{
using support::MemoryReadStream;
using support::MemoryWriteStream;
using support::MessageOf;
using utility::MakeCom;

constexpr auto kEnd = std::char_traits<char>::eof();

TEST(PrintStreamBuffer, WritesEverythingStraightThrough)
{
    const auto stream = MakeCom<MemoryWriteStream>();
    PrintStreamBuffer buffer(stream.Get());
    std::ostream output(&buffer);
    output << "page " << 12;
    EXPECT_EQ(stream->bytes, "page 12");
    output.put('!');
    EXPECT_EQ(stream->bytes, "page 12!");
    EXPECT_EQ(output.tellp(), 8);
    EXPECT_EQ(stream->closes, 0);
}

TEST(PrintStreamBuffer, TurnsAFailedWriteIntoAFailedStream)
{
    const auto stream = MakeCom<MemoryWriteStream>();
    stream->writeResult = STG_E_MEDIUMFULL;
    stream->takenOnFailure = 3;
    PrintStreamBuffer buffer(stream.Get());
    EXPECT_EQ(MessageOf<std::overflow_error>([&] { buffer.sputn("abcde", 5); }),
              "IPrintWriteStream::WriteBytes failed.");
    EXPECT_EQ(buffer.sputc('x'), kEnd);
    // Three bytes of the bulk and the one that came with the failed character.
    stream->writeResult = S_OK;
    EXPECT_EQ(buffer.pubseekoff(0, std::ios::cur, std::ios::out), 4);

    stream->writeResult = STG_E_MEDIUMFULL;
    std::ostream output(&buffer);
    output << "abcde";
    EXPECT_TRUE(output.bad());
}

TEST(PrintStreamBuffer, ReadsAcrossShortReads)
{
    const auto stream = MakeCom<MemoryReadStream>("one two\nthree");
    stream->longestRead = 2;
    PrintStreamBuffer buffer(stream.Get());
    std::istream input(&buffer);
    std::string line;
    std::getline(input, line);
    EXPECT_EQ(line, "one two");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(input), {}), "three");
}

TEST(PrintStreamBuffer, LooksAtACharacterWithoutTakingIt)
{
    const auto stream = MakeCom<MemoryReadStream>("\xFFz");
    PrintStreamBuffer buffer(stream.Get());
    EXPECT_EQ(buffer.sgetc(), 0xFF);
    EXPECT_EQ(stream->position, 0);
    EXPECT_EQ(buffer.sbumpc(), 0xFF);
    EXPECT_EQ(buffer.sbumpc(), 'z');
    EXPECT_EQ(buffer.sgetc(), kEnd);

    stream->position = 0;
    stream->seekResult = E_FAIL;
    EXPECT_EQ(buffer.sgetc(), kEnd);
    stream->readResult = E_FAIL;
    EXPECT_EQ(buffer.sbumpc(), kEnd);
}

class BothDirections : public ::testing::Test
{
protected:
    const utility::ComPtr<MemoryReadStream> readable =
        MakeCom<MemoryReadStream>(std::string(10'000, 'r') + "end");
    const utility::ComPtr<MemoryWriteStream> writable = MakeCom<MemoryWriteStream>();
    PrintStreamBuffer reading{readable.Get()};
    PrintStreamBuffer writing{writable.Get()};
};

TEST_F(BothDirections, RefuseTheOther)
{
    char byte = 0;
    const std::string noRead = "read data from buffer which to use for write.";
    EXPECT_EQ(MessageOf<std::logic_error>([&] { writing.sbumpc(); }), noRead);
    EXPECT_EQ(MessageOf<std::logic_error>([&] { writing.sgetc(); }), noRead);
    EXPECT_EQ(MessageOf<std::logic_error>([&] { writing.sgetn(&byte, 1); }), noRead);
    EXPECT_EQ(MessageOf<std::logic_error>([&] { reading.sputn("x", 1); }),
              "write data from buffer which to use for read.");
    EXPECT_EQ(reading.sputc('x'), kEnd);
}

TEST_F(BothDirections, SeekForwardFromWhereTheyStand)
{
    readable->longestRead = 3'000;
    EXPECT_EQ(reading.pubseekoff(10'000, std::ios::cur, std::ios::in), 10'000);
    EXPECT_EQ(reading.sbumpc(), 'e');
    // Beyond the end it stops at the end.
    EXPECT_EQ(reading.pubseekoff(100, std::ios::cur, std::ios::in), 10'003);

    EXPECT_EQ(writing.pubseekoff(16, std::ios::cur, std::ios::out), 16);
    EXPECT_EQ(writable->bytes, std::string(16, '\0'));
    EXPECT_EQ(writing.pubseekoff(9'000, std::ios::cur, std::ios::out), 9'016);
    EXPECT_EQ(writable->bytes.size(), 9'016U);
}

TEST_F(BothDirections, FailEverySeekThatIsNotForward)
{
    static constexpr auto unknown = static_cast<std::ios_base::seekdir>(7);
    const std::streampos failed(-1);
    for (const auto& [buffer, which] :
         {std::pair(&reading, std::ios::in), std::pair(&writing, std::ios::out)})
    {
        EXPECT_EQ(buffer->pubseekoff(-1, std::ios::cur, which), failed);
        EXPECT_EQ(buffer->pubseekoff(2, std::ios::beg, which), failed);
        EXPECT_EQ(buffer->pubseekoff(0, std::ios::end, which), failed);
        EXPECT_EQ(buffer->pubseekpos(3, which), failed);
        EXPECT_EQ(MessageOf<std::invalid_argument>(
                      [buffer = buffer, which = which] { buffer->pubseekoff(1, unknown, which); }),
                  "invalide std::ios_base::seekdir");
    }
    EXPECT_EQ(readable->seeks + readable->reads, 0);
    EXPECT_EQ(writable->bytes, "");
}
} // namespace
} // namespace base::io
