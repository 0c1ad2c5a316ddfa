#pragma once

#include <functional>

#include "platform/filterpipeline.h"

namespace host
{
/// Rewrites the markup of one fixed page: reads `markup` from its start and writes the new page to `output`,
/// which it closes exactly once. Both are lent for the call. A failure is an exception derived from
/// std::exception, and nothing of that page is kept.
using PageRewriter = std::function<void(IPrintReadStream* markup, IPrintWriteStream* output)>;

/// The rewriter of the command line: turns the page a quarter turn.
void RewritePage(IPrintReadStream* markup, IPrintWriteStream* output);
} // namespace host
