#include "host/report/pagereport.h"

#include <gtest/gtest.h>

#include "tests/host/report/testpages.h"

namespace host::report
{
namespace
{
TEST(PageReport, DecidesAndExplainsByWhatWasSeenOfThePage)
{
    constexpr base::xps::printschema::MediaSize largest{215'900, 355'600};
    constexpr base::xps::printschema::MediaSize sideways{279'400, 215'900};
    const std::string isPassed = "Portrait on an upright sheet within the limits";
    const std::string isFitted =
        " mm is outside the limits: now NorthAmericaLetter 215.9x279.4, scaled to 65 %";
    const struct
    {
        const char* orientation;
        base::xps::printschema::MediaSize media;
        bool isMarkupReplaced;
        bool isGiven;
        const char* decision;
        std::string reason;
    } pages[] = {
        {"Portrait", kLetter, false, false, "passed", isPassed},
        {"Portrait", largest, false, true, "passed", isPassed},
        {"Landscape", kLetter, true, true, "turned", "Landscape on an upright sheet"},
        {"Portrait", sideways, true, true, "turned", "Portrait on a landscape sheet"},
        {"Portrait", kA3, false, true, "refitted", "297x420" + isFitted},
        {"ReverseLandscape", kLetter, false, true, "refitted", "279.4x215.9" + isFitted},
        {"Landscape",
         kA3,
         true,
         true,
         "turned, refitted",
         "Landscape on an upright sheet; 297x420" + isFitted},
    };
    for (const auto& [orientation, media, isMarkupReplaced, isGiven, decision, reason] : pages)
    {
        PageReport page = isGiven ? GivenPage() : PassedPage();
        page.asked.orientation = orientation;
        page.asked.media = media;
        page.isMarkupReplaced = isMarkupReplaced;
        EXPECT_STREQ(NameOf(Decide(page)), decision) << reason;
        EXPECT_EQ(ExplainDecision(page), reason);
    }
    PageReport kept = GivenPage();
    kept.asked.media = kA3;
    kept.given->scaling = "None";
    EXPECT_TRUE(ExplainDecision(kept).ends_with("215.9x279.4, scaling stays None"));
}
} // namespace
} // namespace host::report
