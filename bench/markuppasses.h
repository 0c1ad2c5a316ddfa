#pragma once

#include <string>
#include <vector>

namespace bench
{
/// A page's markup, and that of the turned page.
struct MarkupPage
{
    explicit MarkupPage(std::string source);

    std::string markup;
    std::string turned;
};

/// A way through a page's markup.
struct MarkupPass
{
    const char* name;
    void (*run)(const MarkupPage& page);
};

/// The parse alone; the parse whose handler reads every attribute; the floor of any rewrite, which is that
/// parse and the turned page written without having been made; and the rewrite.
extern const std::vector<MarkupPass> kMarkupPasses;
} // namespace bench
