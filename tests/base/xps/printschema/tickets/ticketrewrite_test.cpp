#include "base/xps/printschema/tickets/ticketrewrite.h"

#include <string>

#include <gtest/gtest.h>

#include "base/xps/printschema/mediasizedata.h"
#include "base/xps/printschema/pageorientationdata.h"
#include "base/xps/printschema/scalingdata.h"
#include "base/xps/printschema/vocabulary/namespaceprefixes.h"
#include "support/processortime.h"
#include "support/table.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using support::Count;
using support::Document;
using support::Feature;
using support::Integers;
using support::Join;
using support::MakeTicket;

constexpr std::int32_t kPrivateScaling = 7;
const std::string kParameters = "//f:ParameterInit/@name | //f:ParameterInit/f:Value";

void Rewrite(const Document& ticket, std::int32_t scalingOption)
{
    const MediaSizeData mediaSize;
    const PageOrientationData orientation;
    ScalingData scaling;
    scaling.SetOptionId(scalingOption);
    scaling.SetScale({1, 2, 30, 40});
    const PrintTicketFunctionOption* const accessors[] = {&mediaSize, &orientation, &scaling};
    RewriteTicket(ticket, accessors, L"urn:private");
}

std::string ScalingBy(const std::string& parameter)
{
    return Feature("PageScaling",
                   "CustomSquare",
                   "<psf:ScoredProperty name='psk:P'><psf:ParameterRef name='psk:" + parameter +
                       "'/></psf:ScoredProperty>");
}

TEST(RewriteTicket, KeepsTheParametersThatAreNotOfTheReplacedFeatures)
{
    for (const auto& row : support::LoadTable("keptparameters.txt"))
    {
        const Document ticket = MakeTicket(row.at(2));
        Rewrite(ticket, std::stoi(row[0]));
        EXPECT_EQ(Join(ticket, kParameters), row[1]) << row[2];
    }
}

TEST(RewriteTicket, DeclaresThePrefixesThatItUses)
{
    const std::string schema = "http://schemas.microsoft.com/windows/2003/08/printing/printschema";
    for (const auto& row : support::LoadTable("addedprefixes.txt"))
    {
        const std::int32_t option = std::stoi(row.at(0));
        const std::string& declared = row.at(3);
        const Document ticket =
            support::LoadDocument("<f:PrintTicket version='1' xmlns:f='" + schema + "framework' " + declared +
                                  "><f:Feature name='v:Mine'/></f:PrintTicket>");
        Rewrite(ticket, option);
        EXPECT_EQ(Join(ticket, "//f:Feature[substring-after(@name, ':')='PageScaling']/f:Option/@name"),
                  row[1]);
        EXPECT_EQ(
            Count(ticket,
                  "//f:Option[namespace::*[local-name()=substring-before(../@name, ':')]='" + row[2] + "']"),
            option == kPrivateScaling ? 1 : 3)
            << declared;
        EXPECT_EQ(support::CountFeatures(ticket, schema + "keywords", "PageMediaSize"), 1) << declared;
        EXPECT_EQ(Count(ticket, "//f:Value[@*[namespace-uri()='http://www.w3.org/2001/XMLSchema-instance']]"),
                  2);
        EXPECT_EQ(Join(ticket, "//f:Feature[1]/@name"), "v:Mine");
    }
}

TEST(RewriteTicket, TakesTimeInProportionToTheTicket)
{
    std::string content = Feature("PageOrientation", "Landscape") + ScalingBy("S");
    for (int number = 0; number < 4000; ++number)
    {
        const std::string name = "psk:P" + std::to_string(number);
        content += "<psf:Feature name='psk:F" + std::to_string(number) +
                   "'><psf:Option><psf:ScoredProperty name='" + name + "'><psf:ParameterRef name='" + name +
                   "'/></psf:ScoredProperty></psf:Option></psf:Feature>" + "<psf:ParameterInit name='" +
                   name + "'><psf:Value>1</psf:Value></psf:ParameterInit>" +
                   Feature("PageOrientation", "Landscape");
    }
    const Document ticket = MakeTicket(content);
    const double before = support::ProcessorSeconds();
    Rewrite(ticket, 6);
    // A tenth of the time of comparing every pair.
    EXPECT_LT(support::ProcessorSeconds() - before, 3.0);
    EXPECT_EQ(Count(ticket, "//f:ParameterInit"), 4000);
    EXPECT_EQ(Count(ticket, "//f:Feature[@name='psk:PageOrientation']"), 1);
}
} // namespace
} // namespace base::xps::printschema
