#include "base/io/piecebuffer.h"

#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "base/io/printstreambuffer.h"
#include "support/printstreams.h"

namespace base::io
{
namespace
{
struct PieceBufferTest : ::testing::Test
{
    const std::string tag = std::string(100, 'x');
    const utility::ComPtr<support::MemoryWriteStream> stream = utility::MakeCom<support::MemoryWriteStream>();
    PrintStreamBuffer target{stream.Get()};
    PieceBuffer pieces{target};
    std::ostream output{&pieces};
};

TEST_F(PieceBufferTest, PassesLargePiecesOnAndTheRestWhenFlushed)
{
    for (int written = 0; written < 100; ++written)
    {
        output << tag;
    }
    EXPECT_EQ(stream->bytes, std::string(8192, 'x'));
    output.flush();
    EXPECT_EQ(stream->bytes, std::string(10'000, 'x'));
    EXPECT_TRUE(output.flush());
}

TEST_F(PieceBufferTest, FailsTheStreamWhenTheTargetThrowsOrTakesTooLittle)
{
    stream->writeResult = E_FAIL;
    output << tag;
    EXPECT_TRUE(output);
    EXPECT_FALSE(output.flush());

    output.clear();
    stream->writeResult = S_OK;
    stream->longestWrite = 10;
    output << std::string(10'000, 'x');
    EXPECT_FALSE(output);
}
} // namespace
} // namespace base::io
