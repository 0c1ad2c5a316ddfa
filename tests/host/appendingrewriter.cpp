#include <stdexcept>
#include <string>

#include "host/pagerewriter.h"

// What the program's own test is linked with in place of the real rewriter: the page as it was, and a
// comment.
namespace host
{
namespace
{
void Check(HRESULT result)
{
    if (FAILED(result))
    {
        throw std::runtime_error("a stream failed");
    }
}

void Write(IPrintWriteStream& stream, const void* bytes, ULONG count)
{
    ULONG written = 0;
    Check(stream.WriteBytes(bytes, count, &written));
}
} // namespace

void RewritePage(IPrintReadStream* markup, IPrintWriteStream* output)
{
    std::string last;
    BOOL isEnd = FALSE;
    while (isEnd == FALSE)
    {
        char buffer[4096];
        ULONG count = 0;
        Check(markup->ReadBytes(buffer, sizeof(buffer), &count, &isEnd));
        Write(*output, buffer, count);
        last.assign(buffer, count);
    }
    const std::string comment = "<!-- rewritten -->";
    Write(*output, comment.data(), static_cast<ULONG>(comment.size()));
    output->Close();
    if (last.find("</FixedPage>") == std::string::npos)
    {
        throw std::runtime_error("the page has no end\n\n");
    }
}
} // namespace host
