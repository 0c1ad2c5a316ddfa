#include "base/xps/printschema/printticketstructurecomparator.h"

#include <gtest/gtest.h>

#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using utility::ComPtr;

ComPtr<IXMLDOMNode> FirstChild(const tests::Document& document)
{
    ComPtr<IXMLDOMElement> root;
    EXPECT_EQ(document->get_documentElement(root.Receive()), S_OK);
    ComPtr<IXMLDOMNode> child;
    EXPECT_EQ(root->get_firstChild(child.Receive()), S_OK);
    return child;
}

TEST(PrintTicketStructureComparator, ComparesQualifiedNameAndNameAttribute)
{
    const struct
    {
        const wchar_t* first;
        const wchar_t* second;
        bool isSame;
    } cases[] = {
        {L"<psf:Feature name='psk:A'/>",
         L"<psf:Feature name='psk:A' other='1'><psf:Option/></psf:Feature>",
         true},
        {L"<psf:Feature name='psk:A'/>", L"<psf:Feature name='ns0000:A'/>", false},
        {L"<psf:Feature name='psk:A'/>", L"<psf:Feature name='psk:a'/>", false},
        {L"<psf:Feature name='psk:A'/>", L"<psf:Property name='psk:A'/>", false},
        {L"<psf:Feature name='psk:A'/>",
         L"<a:Feature name='psk:A' xmlns:a='http://schemas.microsoft.com/windows/2003/08/printing/"
         L"printschemaframework'/>",
         false},
        {L"<psf:Option other='1'/>", L"<psf:Option>content</psf:Option>", true},
        {L"<psf:Option name='psk:A'/>", L"<psf:Option/>", false},
        {L"<psf:Option/>", L"<psf:Option name=''/>", false},
        {L"text", L"other text", true},
        {L"text", L"<!--comment-->", false},
        // The same name, but attributes on one side only.
        {L"<psf/>", L"<?psf?>", false},
    };
    const PrintTicketStructureComparator comparator;
    for (const auto& row : cases)
    {
        const ComPtr<IXMLDOMNode> first = FirstChild(tests::MakeTicket(row.first));
        const ComPtr<IXMLDOMNode> second = FirstChild(tests::MakeTicket(row.second));
        EXPECT_EQ(comparator.IsSameNode(first.Get(), second.Get()), row.isSame) << row.first << row.second;
        EXPECT_EQ(comparator.IsSameNode(second.Get(), first.Get()), row.isSame) << row.first << row.second;
    }
}
} // namespace
} // namespace base::xps::printschema
