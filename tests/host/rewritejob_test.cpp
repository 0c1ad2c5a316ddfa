#include "host/rewritejob.h"

#include <algorithm>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/host/testpackages.h"

namespace host
{
namespace
{
std::string ReadAll(IPrintReadStream& stream)
{
    std::string text;
    BOOL isEnd = FALSE;
    while (isEnd == FALSE)
    {
        char buffer[100];
        ULONG count = 0;
        EXPECT_EQ(stream.ReadBytes(buffer, sizeof(buffer), &count, &isEnd), S_OK);
        text.append(buffer, count);
    }
    return text;
}

void WriteAll(IPrintWriteStream& stream, const std::string& text)
{
    ULONG written = 0;
    EXPECT_EQ(stream.WriteBytes(text.data(), static_cast<ULONG>(text.size()), &written), S_OK);
    EXPECT_EQ(written, text.size());
}

void IgnoreProgress(const JobProgress&) {}

TEST(RewritePages, HandsOverEveryPageInDocumentOrder)
{
    const OutputFolder folder;
    std::vector<std::string> markups;
    std::vector<JobCount> progress;
    std::vector<double> written;
    const JobCount done = RewritePages(
        TestPackage("odd-names"),
        folder / "out.xps",
        [&](IPrintReadStream* markup, IPrintWriteStream* output) {
            markups.push_back(ReadAll(*markup));
            WriteAll(*output, "page " + std::to_string(markups.size()));
            output->Close();
        },
        [&](const JobProgress& soFar) {
            EXPECT_EQ(soFar.done.pages, markups.size());
            soFar.stage == JobStage::Rewriting ? progress.push_back(soFar.done)
                                               : written.push_back(soFar.written);
        });
    EXPECT_EQ(done, (JobCount{2, 3}));
    EXPECT_EQ(progress, (std::vector<JobCount>{{1, 1}, {1, 2}, {2, 3}}));
    EXPECT_TRUE(std::is_sorted(written.begin(), written.end()));
    EXPECT_EQ(written.back(), 1.0);

    const opc::Package before(TestPackage("odd-names"));
    const opc::Package after(folder / "out.xps");
    const char* const pages[] = {
        "Documents/1/Pages/a - b.fpage", "Documents/1/Pages/2.fpage", "Documents/2/Pages/a - b.fpage"};
    for (std::size_t page = 0; page < 3; ++page)
    {
        EXPECT_EQ(markups.at(page), before.Read(Part(pages[page])));
        EXPECT_EQ(after.Read(Part(pages[page])), "page " + std::to_string(page + 1));
    }
    EXPECT_EQ(after.Parts().size(), before.Parts().size());
}

TEST(RewritePages, StopsWhereTheListenerThrows)
{
    for (const JobStage stage : {JobStage::Rewriting, JobStage::Writing})
    {
        const OutputFolder folder;
        WriteFile(folder / "out.xps", "old");
        const auto stop = [&](const JobProgress& progress) {
            if (progress.stage == stage)
            {
                throw std::out_of_range("enough");
            }
        };
        const auto close = [](IPrintReadStream*, IPrintWriteStream* output) { output->Close(); };
        EXPECT_THROW(RewritePages(TestPackage("sample"), folder / "out.xps", close, stop), std::out_of_range);
        EXPECT_EQ(folder.Files(), std::vector<std::string>{"out.xps"});
        EXPECT_EQ(ReadFile(folder / "out.xps"), "old");
    }
}

struct FailingRewriter
{
    const char* name;
    const char* package;
    PageRewriter rewrite;
    const char* fault;
};

class RewritePagesFault : public testing::TestWithParam<FailingRewriter>
{
};

TEST_P(RewritePagesFault, NamesThePageAndLeavesTheOutputAsItWas)
{
    const OutputFolder folder;
    std::filesystem::copy_file(TestPackage(GetParam().package), folder / "in.xps");
    WriteFile(folder / "out.xps", "old");
    const std::string fault = FaultOf(
        [&] { RewritePages(folder / "in.xps", folder / "out.xps", GetParam().rewrite, &IgnoreProgress); });
    EXPECT_TRUE(fault.starts_with(GetParam().fault)) << fault;
    EXPECT_EQ(folder.Files(), (std::vector<std::string>{"in.xps", "out.xps"}));
    EXPECT_EQ(ReadFile(folder / "out.xps"), "old");
    EXPECT_TRUE(ReadFile(folder / "in.xps") == ReadFile(TestPackage(GetParam().package)));
}

void CloseAtOnce(IPrintReadStream*, IPrintWriteStream* output)
{
    output->Close();
}

void FailOnSecondPage(IPrintReadStream* markup, IPrintWriteStream* output)
{
    output->Close();
    if (ReadAll(*markup).find("v 200") != std::string::npos)
    {
        throw std::runtime_error("no");
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rewriters,
    RewritePagesFault,
    testing::Values(FailingRewriter{"throws", "tickets", &FailOnSecondPage, "/Documents/1/Pages/2.fpage: no"},
                    FailingRewriter{"meets_malformed_markup",
                                    "bad-page",
                                    &FailOnSecondPage,
                                    "/Documents/1/Pages/2.fpage: is not well-formed: line 2: "},
                    FailingRewriter{"must_not_see_a_document_type",
                                    "page-document-type",
                                    &CloseAtOnce,
                                    "/Documents/1/Pages/1.fpage: declares a document type"},
                    FailingRewriter{"does_not_close",
                                    "tickets",
                                    [](IPrintReadStream*, IPrintWriteStream*) {},
                                    "/Documents/1/Pages/1.fpage: its output was closed 0 times"},
                    FailingRewriter{"closes_twice",
                                    "tickets",
                                    [](IPrintReadStream*, IPrintWriteStream* output) {
                                        output->Close();
                                        output->Close();
                                    },
                                    "/Documents/1/Pages/1.fpage: its output was closed 2 times"},
                    FailingRewriter{"meets_a_missing_page_late",
                                    "no-ticket",
                                    &CloseAtOnce,
                                    "/Documents/2/Metadata/document.xml: "}),
    [](const auto& row) { return std::string(row.param.name); });
} // namespace
} // namespace host
