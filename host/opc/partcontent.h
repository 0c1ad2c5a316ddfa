#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/opc/temporaryfile.h"

namespace host::opc
{
/// The new content of one part until it is written to the package. Several contents share one spill file,
/// which they keep alive.
class PartContent
{
public:
    explicit PartContent(std::shared_ptr<SpillFile> spill) : m_spill(std::move(spill)) {}

    PartContent(PartContent&&) = default;
    PartContent& operator=(PartContent&&) = default;

    /// Throws FileError when the spill file cannot take it.
    void Append(std::string_view bytes);

    /// Moves all bytes to the spill file. To be called when the content is complete.
    void SpillAll();

    /// In bytes.
    std::uint64_t Size() const noexcept { return m_spilled + m_pending.size(); }

    /// Reads from `position` on and gives the count of bytes, which is less than `size` only at the end.
    std::size_t Read(std::uint64_t position, char* buffer, std::size_t size) const;

    /// The first bytes, at most `most`.
    std::string ReadStart(std::uint64_t most) const;

private:
    /// A run of bytes in the spill file.
    struct Extent
    {
        std::uint64_t offset;
        std::uint64_t size;
    };

    void Spill();

    std::shared_ptr<SpillFile> m_spill;
    std::vector<Extent> m_extents;
    std::uint64_t m_spilled = 0;
    // Not spilled yet: markup is written a few characters at a time.
    std::string m_pending;
};

/// The level of zlib that new parts are compressed at. Its slowest one takes three times as long for a page
/// of 1 MB, which becomes 4 % smaller.
constexpr int kUsualCompression = 6;

/// A part's content, deflated as a ZIP archive stores it.
struct CompressedContent
{
    PartContent deflated;
    /// In bytes, of what was compressed.
    std::uint64_t size = 0;
    std::uint32_t crc = 0;
};

/// Compresses `content` into an empty one, at a level from 0, as it is, to 9. Throws FileError when the spill
/// file cannot be read or written.
CompressedContent Compress(const PartContent& content, PartContent empty, int level);
} // namespace host::opc
