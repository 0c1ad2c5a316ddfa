#include "base/xps/printschema/inputbindata.h"

#include <gtest/gtest.h>

#include "base/xml/xmlutility.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using tests::Count;
using tests::Document;
using tests::HandlerOf;

TEST(InputBinData, WritesItsFeedDirectionUnderTheTicketsPrefix)
{
    const Document document = xml::XmlUtility::LoadDocumentFromString(
        L"<psf:PrintTicket "
        L"xmlns:psf='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'"
        L" xmlns:k='http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords'"
        L" xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
        L"xmlns:s='http://www.w3.org/2001/XMLSchema'/>");
    InputBinData bin;
    bin.SetFeedDirection(L"LongEdgeFirst");
    bin.Write(HandlerOf(document));
    EXPECT_EQ(
        Count(
            tests::Reload(document),
            L"/psf:PrintTicket/psf:Feature[@name = 'k:JobInputBin']/psf:Option[@name = 'k:AutoSelect']"
            L"/psf:Property[@name = 'k:FeedDirection']/psf:Value[. = 'k:LongEdgeFirst' and @* = 's:QName']"),
        1);
    bin.SetFeedDirection(L"Sideways");
    EXPECT_EQ(bin.GetFeedDirection(), -1);
    bin.Write(HandlerOf(document), Scope::Page);
    EXPECT_EQ(Count(document, L"//psf:Feature[@name = 'k:PageInputBin']/psf:Option[not(*)]"), 1);
}
} // namespace
} // namespace base::xps::printschema
