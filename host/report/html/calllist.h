#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/pipeline/calltrace.h"

namespace host::report::html
{
/// The pipeline calls for one part. Beyond a limit they are only counted.
class CallList
{
public:
    void Add(const pipeline::TracedCall& call);
    void Clear();

    std::size_t Count() const noexcept { return m_count; }
    /// As lines of a page in HTML: the result, the method, what the call was about, and the result's meaning.
    const std::string& Text() const noexcept { return m_text; }
    std::size_t LeftOut() const noexcept { return m_leftOut; }

private:
    std::string m_text;
    std::size_t m_count = 0;
    std::size_t m_leftOut = 0;
};
} // namespace host::report::html
