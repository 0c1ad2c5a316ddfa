#include "host/opc/partcontent.h"

#include <algorithm>

namespace host::opc
{
namespace
{
constexpr std::size_t kSpillThreshold = 65536;
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
} // namespace host::opc
