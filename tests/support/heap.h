#pragma once

#include <cstddef>

#include "platform/win32.h"

namespace tests
{
/// The blocks in use on the process heap, where objects, strings and the DOM live. A few come and go with the
/// system's caches: what is to leave nothing behind is run many times between two counts. Blocks of fewer
/// bytes than `atLeast` do not count.
inline std::size_t CountHeapBlocks(std::size_t atLeast = 0)
{
    std::size_t count = 0;
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(GetProcessHeap(), &entry))
    {
        count += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 && entry.cbData >= atLeast ? 1 : 0;
    }
    return count;
}
} // namespace tests
