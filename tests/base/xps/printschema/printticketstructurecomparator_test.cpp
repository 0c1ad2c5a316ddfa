#include "base/xps/printschema/printticketstructurecomparator.h"

#include <gtest/gtest.h>

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
    const std::string feature = "<psf:Feature name='psk:A'/>";
    const struct
    {
        std::string first;
        std::string second;
        bool isSame;
    } cases[] = {
        {feature, "<psf:Feature name='psk:A' other='1'><psf:Option/></psf:Feature>", true},
        {feature, "<psf:Feature name='ns0000:A'/>", false},
        {feature, "<psf:Feature name='psk:a'/>", false},
        {feature, "<psf:Property name='psk:A'/>", false},
        {feature, "<psk:Feature name='psk:A'/>", false},
        {"<psf:Option other='1'/>", "<psf:Option>content</psf:Option>", true},
        {"<psf:Option name='psk:A'/>", "<psf:Option/>", false},
        {"<psf:Option/>", "<psf:Option name=''/>", false},
        {"text", "other text", true},
        {"text", "<!--comment-->", false},
        // The same name, but only one has attributes.
        {"<psf/>", "<?psf?>", false},
    };
    const PrintTicketStructureComparator comparator;
    for (const auto& row : cases)
    {
        const auto first = FirstChild(support::MakeTicket(row.first));
        const auto second = FirstChild(support::MakeTicket(row.second));
        EXPECT_EQ(comparator.IsSameNode(first.Get(), second.Get()), row.isSame) << row.first << row.second;
        EXPECT_EQ(comparator.IsSameNode(second.Get(), first.Get()), row.isSame) << row.first << row.second;
    }
}
} // namespace
} // namespace base::xps::printschema
