#include "base/xps/printschema/tickets/ticketrewrite.h"

#include <string>

#include <gtest/gtest.h>

#include "base/xps/printschema/mediasizedata.h"
#include "base/xps/printschema/pageorientationdata.h"
#include "base/xps/printschema/scalingdata.h"
#include "base/xps/printschema/vocabulary/namespaceprefixes.h"
#include "support/processortime.h"
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
    const std::string copies = Integers("ParameterInit", "psk:", "PageCopies=3");
    const std::string stamp =
        Feature("PageWatermark",
                "Text",
                "<psf:ScoredProperty name='psk:Q'>"
                "<psf:ParameterRef name='psk:PageScalingOffsetWidth'/></psf:ScoredProperty>");
    const std::string offset = Integers("ParameterInit", "psk:", "PageScalingOffsetWidth=9");
    const std::string written = "psk:PageScalingOffsetWidth 1 psk:PageScalingOffsetHeight 2 "
                                "psk:PageScalingScaleWidth 30 psk:PageScalingScaleHeight 40";
    const struct
    {
        const char* name;
        std::string ticket;
        std::int32_t option;
        std::string parameters;
    } cases[] = {
        {"of nobody",
         copies + ScalingBy("S") + Integers("ParameterInit", "psk:", "S=50"),
         6,
         "psk:PageCopies 3"},
        {"of nobody, nothing replaced", copies, 6, "psk:PageCopies 3"},
        {"of another feature",
         stamp + offset + ScalingBy("PageScalingOffsetWidth"),
         6,
         "psk:PageScalingOffsetWidth 9"},
        {"written anew", stamp + offset + ScalingBy("PageScalingOffsetWidth"), 0, written},
        {"of nobody, and written", copies + offset, 0, written + " psk:PageCopies 3"},
    };
    for (const auto& [name, content, option, parameters] : cases)
    {
        const Document ticket = MakeTicket(content);
        Rewrite(ticket, option);
        EXPECT_EQ(Join(ticket, kParameters), parameters) << name;
    }
}

TEST(RewriteTicket, DeclaresThePrefixesThatItUses)
{
    const std::string schema = "http://schemas.microsoft.com/windows/2003/08/printing/printschema";
    const std::string keywords = schema + "keywords";
    const struct
    {
        const char* declarations;
        std::int32_t option;
        const char* optionName;
        /// The namespace of the option's prefix.
        std::string optionNamespace;
    } cases[] = {
        {"", 6, "psk:None", keywords},
        {"xmlns:k='KEYWORDS' xmlns:psk='urn:other'", 6, "k:None", keywords},
        {"xmlns:psk='urn:other' xmlns:xsi='urn:other' xmlns:xsd='urn:other'", 6, "ns0001:None", keywords},
        {"", kPrivateScaling, "ns0000:FitApplicationImageableSizeToImageableSize", "urn:private"},
        {"xmlns:own='urn:private'",
         kPrivateScaling,
         "own:FitApplicationImageableSizeToImageableSize",
         "urn:private"},
        {"xmlns:ns0000='urn:other' xmlns:psk='urn:other'",
         kPrivateScaling,
         "ns0002:FitApplicationImageableSizeToImageableSize",
         "urn:private"},
    };
    for (const auto& [declarations, option, optionName, optionNamespace] : cases)
    {
        std::string declared = declarations;
        if (const std::size_t at = declared.find("KEYWORDS"); at != std::string::npos)
        {
            declared.replace(at, 8, keywords);
        }
        const Document ticket =
            support::LoadDocument("<f:PrintTicket version='1' xmlns:f='" + schema + "framework' " + declared +
                                  "><f:Feature name='v:Mine'/></f:PrintTicket>");
        Rewrite(ticket, option);
        EXPECT_EQ(Join(ticket, "//f:Feature[substring-after(@name, ':')='PageScaling']/f:Option/@name"),
                  optionName);
        EXPECT_EQ(Count(ticket,
                        "//f:Option[namespace::*[local-name()=substring-before(../@name, ':')]='" +
                            optionNamespace + "']"),
                  option == kPrivateScaling ? 1 : 3)
            << declarations;
        EXPECT_EQ(support::CountFeatures(ticket, keywords, "PageMediaSize"), 1) << declarations;
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
