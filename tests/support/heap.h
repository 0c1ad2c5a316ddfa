#pragma once

#include <cstddef>
#include <vector>

#include "platform/win32.h"

namespace tests
{
struct HeapUse
{
    std::size_t blocks = 0;
    std::size_t bytes = 0;
};

inline HeapUse operator+(const HeapUse& one, const HeapUse& other)
{
    return {one.blocks + other.blocks, one.bytes + other.bytes};
}

/// Blocks of fewer than `atLeast` bytes are not counted.
inline HeapUse MeasureHeap(HANDLE heap, std::size_t atLeast = 0)
{
    HeapUse use;
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heap, &entry))
    {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 && entry.cbData >= atLeast)
        {
            use = use + HeapUse{1, entry.cbData};
        }
    }
    return use;
}

/// All heaps of the process, including the runtime's, from which new and the DOM allocate.
inline std::vector<HANDLE> GetHeaps()
{
    std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
    heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
    return heaps;
}

inline HeapUse MeasureHeaps()
{
    HeapUse use;
    for (HANDLE heap : GetHeaps())
    {
        use = use + MeasureHeap(heap);
    }
    return use;
}

/// The blocks in use on the process heap, which holds the strings and objects of COM but not what a test
/// allocates with new. The system's caches allocate and free a few: run what must not leak many times between
/// two counts.
inline std::size_t CountHeapBlocks(std::size_t atLeast = 0)
{
    return MeasureHeap(GetProcessHeap(), atLeast).blocks;
}
} // namespace tests
