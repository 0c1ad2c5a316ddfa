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
using support::Answering;
using support::MessageOf;
using utility::MakeCom;

constexpr auto kEnd = std::char_traits<char>::eof();

class BufferTest : public ::testing::Test
{
protected:
    const utility::ComPtr<support::MemoryReadStream> readable =
        MakeCom<support::MemoryReadStream>("\xFFone\nthree" + std::string(10'000, 'r') + "end");
    const utility::ComPtr<support::MemoryWriteStream> writable = MakeCom<support::MemoryWriteStream>();
    PrintStreamBuffer reading{readable.Get()};
    PrintStreamBuffer writing{writable.Get()};
};

TEST_F(BufferTest, WritesEverythingStraightThroughAndFailsTheStreamWhereThatFails)
{
    std::ostream output(&writing);
    output << "page " << 12;
    EXPECT_EQ(writable->bytes, "page 12");
    output.put('!');
    EXPECT_EQ(writable->bytes, "page 12!");
    EXPECT_EQ(writable->closes, 0);

    writable->writeResult = STG_E_MEDIUMFULL;
    writable->longest = 3;
    EXPECT_EQ(MessageOf<std::overflow_error>([&] { writing.sputn("abcde", 5); }),
              "IPrintWriteStream::WriteBytes failed.");
    EXPECT_EQ(writing.sputc('x'), kEnd);
    output << "abcde";
    EXPECT_TRUE(output.bad());
    writable->writeResult = S_OK;
    // A failed write counts the bytes that were written.
    EXPECT_EQ(writing.pubseekoff(0, std::ios::cur, std::ios::out), 8 + 3 + 1 + 3);
}

TEST_F(BufferTest, ReadsAcrossShortReadsAndLooksAtACharacterWithoutTakingIt)
{
    EXPECT_EQ(reading.sgetc(), 0xFF);
    EXPECT_EQ(readable->position, 0);
    EXPECT_EQ(reading.sbumpc(), 0xFF);
    readable->longest = 2;
    std::istream input(&reading);
    std::string line;
    std::getline(input, line);
    EXPECT_EQ(line, "one");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(input), {}).size(), 10'008U);
    EXPECT_EQ(reading.sgetc(), kEnd);

    readable->position = 0;
    readable->gate = [](const std::string& method) { return method == "Seek" ? E_FAIL : S_OK; };
    EXPECT_EQ(reading.sgetc(), kEnd);
    readable->gate = Answering(E_FAIL);
    EXPECT_EQ(reading.sbumpc(), kEnd);
}

TEST_F(BufferTest, RefusesTheOtherDirection)
{
    char byte = 0;
    const std::string noRead = "read data from buffer which to use for write.";
    EXPECT_EQ(MessageOf<std::logic_error>([&] { writing.sbumpc(); }), noRead);
    EXPECT_EQ(MessageOf<std::logic_error>([&] { writing.sgetn(&byte, 1); }), noRead);
    EXPECT_EQ(MessageOf<std::logic_error>([&] { reading.sputn("x", 1); }),
              "write data from buffer which to use for read.");
    EXPECT_EQ(reading.sputc('x'), kEnd);
}

TEST_F(BufferTest, SeeksForwardFromWhereItStands)
{
    readable->longest = 3'000;
    EXPECT_EQ(reading.pubseekoff(10'010, std::ios::cur, std::ios::in), 10'010);
    EXPECT_EQ(reading.sbumpc(), 'e');
    // A seek beyond the end stops at the end.
    EXPECT_EQ(reading.pubseekoff(100, std::ios::cur, std::ios::in), 10'013);

    EXPECT_EQ(writing.pubseekoff(16, std::ios::cur, std::ios::out), 16);
    EXPECT_EQ(writable->bytes, std::string(16, '\0'));
    EXPECT_EQ(writing.pubseekoff(9'000, std::ios::cur, std::ios::out), 9'016);
    EXPECT_EQ(writable->bytes.size(), 9'016U);
}

TEST_F(BufferTest, FailsEverySeekThatIsNotForward)
{
    constexpr auto unknown = static_cast<std::ios_base::seekdir>(7);
    const std::streampos failed(-1);
    const auto refuse = [&](PrintStreamBuffer& buffer, std::ios::openmode which) {
        EXPECT_EQ(buffer.pubseekoff(-1, std::ios::cur, which), failed);
        EXPECT_EQ(buffer.pubseekoff(2, std::ios::beg, which), failed);
        EXPECT_EQ(buffer.pubseekoff(0, std::ios::end, which), failed);
        EXPECT_EQ(buffer.pubseekpos(3, which), failed);
        EXPECT_EQ(MessageOf<std::invalid_argument>([&] { buffer.pubseekoff(1, unknown, which); }),
                  "invalide std::ios_base::seekdir");
    };
    refuse(reading, std::ios::in);
    refuse(writing, std::ios::out);
    EXPECT_EQ(readable->seeks + readable->reads, 0);
    EXPECT_EQ(writable->bytes, "");
}
} // namespace
} // namespace base::io
