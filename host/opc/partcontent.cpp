#include "host/opc/partcontent.h"

#include <algorithm>
#include <new>
#include <utility>

#include <zlib.h>

namespace host::opc
{
namespace
{
constexpr std::size_t kSpillThreshold = 65536;

struct DeflateEnder
{
    void operator()(z_stream* stream) const noexcept { deflateEnd(stream); }
};

Bytef* ToBytes(std::string& text)
{
    return reinterpret_cast<Bytef*>(text.data());
}
} // namespace

void PartContent::Append(std::string_view bytes)
{
    m_pending.append(bytes);
    if (m_pending.size() >= kSpillThreshold)
    {
        Spill();
    }
}

void PartContent::SpillAll()
{
    if (!m_pending.empty())
    {
        Spill();
    }
    // Clearing keeps the memory.
    std::string().swap(m_pending);
}

void PartContent::Spill()
{
    const std::uint64_t offset = m_spill->Append(m_pending);
    if (!m_extents.empty() && m_extents.back().offset + m_extents.back().size == offset)
    {
        m_extents.back().size += m_pending.size();
    }
    else
    {
        m_extents.push_back({offset, m_pending.size()});
    }
    m_spilled += m_pending.size();
    m_pending.clear();
}

std::size_t PartContent::Read(std::uint64_t position, char* buffer, std::size_t size) const
{
    std::size_t done = 0;
    std::uint64_t start = 0;
    for (const Extent& extent : m_extents)
    {
        const std::uint64_t skipped = position + done - start;
        if (skipped < extent.size && done < size)
        {
            const std::size_t count =
                static_cast<std::size_t>(std::min<std::uint64_t>(extent.size - skipped, size - done));
            m_spill->Read(extent.offset + skipped, buffer + done, count);
            done += count;
        }
        start += extent.size;
    }
    if (position + done >= start && done < size)
    {
        const auto skipped =
            static_cast<std::size_t>(std::min<std::uint64_t>(position + done - start, m_pending.size()));
        done += m_pending.copy(buffer + done, size - done, skipped);
    }
    return done;
}

std::string PartContent::ReadStart(std::uint64_t most) const
{
    std::string start(static_cast<std::size_t>(std::min(Size(), most)), '\0');
    start.resize(Read(0, start.data(), start.size()));
    return start;
}

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
