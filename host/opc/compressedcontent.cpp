#include "host/opc/compressedcontent.h"

#include <new>
#include <string>
#include <utility>

#include <zlib.h>

namespace host::opc
{
namespace
{
struct DeflateEnder
{
    void operator()(z_stream* stream) const noexcept { deflateEnd(stream); }
};

Bytef* ToBytes(std::string& text)
{
    return reinterpret_cast<Bytef*>(text.data());
}
} // namespace

CompressedContent Compress(const PartContent& content, PartContent empty, int level)
{
    constexpr int rawDeflate = -MAX_WBITS;
    constexpr int usualMemory = 8;
    z_stream stream{};
    if (deflateInit2(&stream, level, Z_DEFLATED, rawDeflate, usualMemory, Z_DEFAULT_STRATEGY) != Z_OK)
    {
        throw std::bad_alloc();
    }
    const std::unique_ptr<z_stream, DeflateEnder> ender(&stream);

    CompressedContent compressed{std::move(empty), content.Size(), 0};
    std::string input(65536, '\0');
    std::string output(65536, '\0');
    uLong crc = 0;
    std::uint64_t position = 0;
    do
    {
        const auto count = static_cast<uInt>(content.Read(position, input.data(), input.size()));
        position += count;
        crc = crc32(crc, ToBytes(input), count);
        stream.next_in = ToBytes(input);
        stream.avail_in = count;
        do
        {
            stream.next_out = ToBytes(output);
            stream.avail_out = static_cast<uInt>(output.size());
            deflate(&stream, position == content.Size() ? Z_FINISH : Z_NO_FLUSH);
            compressed.deflated.Append({output.data(), output.size() - stream.avail_out});
        } while (stream.avail_out == 0);
    } while (position < content.Size());
    compressed.deflated.SpillAll();
    compressed.crc = static_cast<std::uint32_t>(crc);
    return compressed;
}
} // namespace host::opc
