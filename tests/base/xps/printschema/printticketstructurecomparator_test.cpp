#include "base/xps/printschema/printticketstructurecomparator.h"

#include <gtest/gtest.h>

#include "support/table.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
utility::ComPtr<IXMLDOMNode> FirstChild(const support::Document& document)
{
    utility::ComPtr<IXMLDOMElement> root;
    EXPECT_EQ(document->get_documentElement(root.Receive()), S_OK);
    utility::ComPtr<IXMLDOMNode> child;
    EXPECT_EQ(root->get_firstChild(child.Receive()), S_OK);
    return child;
}

TEST(PrintTicketStructureComparator, ComparesQualifiedNameAndNameAttribute)
{
    const PrintTicketStructureComparator comparator;
    for (const auto& row : support::LoadTable("sameelements.txt"))
    {
        const auto first = FirstChild(support::MakeTicket(row.at(1)));
        const auto second = FirstChild(support::MakeTicket(row.at(2)));
        EXPECT_EQ(comparator.IsSameNode(first.Get(), second.Get()), row[0] == "yes") << row[1] << row[2];
        EXPECT_EQ(comparator.IsSameNode(second.Get(), first.Get()), row[0] == "yes") << row[1] << row[2];
    }
}
} // namespace
} // namespace base::xps::printschema
