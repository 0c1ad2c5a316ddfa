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
const std::string kTag(100, 'x');

struct PieceBufferTest : ::testing::Test
{
    /// More than one piece, and what it comes to.
    std::string Write()
    {
        std::string text;
        for (int tag = 0; tag < 100; ++tag)
        {
            output << kTag;
            text += kTag;
        }
        return text;
    }

    const utility::ComPtr<support::MemoryWriteStream> stream = utility::MakeCom<support::MemoryWriteStream>();
    PrintStreamBuffer target{stream.Get()};
    PieceBuffer pieces{target};
    std::ostream output{&pieces};
};

TEST_F(PieceBufferTest, PassesLargePiecesOnAndTheRestWhenFlushed)
{
    const std::string text = Write();
    EXPECT_EQ(stream->bytes, text.substr(0, 8192));
    output.flush();
    EXPECT_EQ(stream->bytes, text);
    EXPECT_TRUE(output.flush());
}

TEST_F(PieceBufferTest, FailsTheStreamWhenTheTargetThrowsOrTakesTooLittle)
{
    stream->writeResult = E_FAIL;
    output << kTag;
    EXPECT_TRUE(output);
    EXPECT_FALSE(output.flush());

    output.clear();
    stream->writeResult = S_OK;
    stream->longestWrite = 10;
    Write();
    EXPECT_FALSE(output);
}
} // namespace
} // namespace base::io
