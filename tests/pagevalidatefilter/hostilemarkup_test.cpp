#include <filesystem>
#include <fstream>
#include <sstream>

#include "pagevalidatefilter/pagevalidatexpsfilter.h"
#include "support/pipelinetest.h"

namespace pagevalidatefilter
{
namespace
{
using support::Feature;
using support::MediaFeature;
using support::Ticket;

/// A filter without the host, which would check the markup first.
class HostileMarkup : public support::PipelineTest
{
protected:
    /// The texts of a job: the tickets from the user's to the page's, then the page.
    struct Job
    {
        std::string userTicket = Ticket(MediaFeature("ISOA4", 210000, 297000));
        std::string sequenceTicket = Ticket("");
        std::string documentTicket = Ticket("");
        std::string pageTicket = Ticket(Feature("PageOrientation", "Landscape"));
        std::string page =
            R"(<FixedPage xmlns="http://schemas.microsoft.com/xps/2005/06" Width="9" Height="9"/>)";
    };

    HRESULT Run(const Job& job)
    {
        Renew(job.userTicket);
        pipeline->Add<support::SequencePart>("sequence", job.sequenceTicket);
        pipeline->Add<support::DocumentPart>("document", job.documentTicket);
        pipeline->Add<support::PagePart>("page", job.page, job.pageTicket);
        const auto filter = base::utility::MakeCom<PageValidateXpsFilter>();
        EXPECT_EQ(pipeline->Initialize(*filter), S_OK);
        const HRESULT hr = filter->StartOperation();
        for (const auto& stream : pipeline->record.writeStreams)
        {
            EXPECT_EQ(stream->closes, 1);
            EXPECT_EQ(stream->bytes.find("SENTINEL"), std::string::npos);
        }
        EXPECT_EQ(pipeline->record.Count("SendFixedPage page"), SUCCEEDED(hr) ? 1 : 0);
        return hr;
    }
};

TEST_F(HostileMarkup, IsRefusedWithADocumentTypeInAnyPart)
{
    ASSERT_EQ(Run({}), S_OK);
    for (const char* documentType : {
             "<!DOCTYPE a>",
             "<!DOCTYPE a SYSTEM 'file:///C:/hostile-secret.txt'>",
             "<?xml version='1.0'?><!-- > --><?p ?><!DOCTYPE a [<!ENTITY b 'c'>]>",
             // In this encoding the first comment ends after the second arrow.
             "<?xml version='1.0' encoding='gbk'?><!-- \x81--><a --><!DOCTYPE a [<!ENTITY b 'c'>]>",
         })
    {
        for (std::string Job::*part :
             {&Job::page, &Job::pageTicket, &Job::documentTicket, &Job::sequenceTicket, &Job::userTicket})
        {
            Job job;
            (job.*part).insert(0, documentType);
            EXPECT_EQ(Run(job), E_FAIL) << job.*part;
        }
    }
}

TEST_F(HostileMarkup, OfEveryKindEndsWithAResult)
{
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(HOSTILE_MARKUP))
    {
        SCOPED_TRACE(entry.path());
        std::ostringstream markup;
        markup << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        Job job;
        (entry.path().extension() == ".page" ? job.page : job.pageTicket) = markup.str();
        static_cast<void>(Run(job));
        ++count;
    }
    EXPECT_GT(count, 100);
}
} // namespace
} // namespace pagevalidatefilter
