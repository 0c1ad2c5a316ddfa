#include "base/xps/printschema/mediasizedata.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

#include <gtest/gtest.h>

#include "base/utility/utf8.h"
#include "base/xps/printschema/keywordlists.h"
#include "support/table.h"
#include "support/thrown.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using support::Document;
using support::HandlerOf;
using support::Join;
using support::MakeTicket;
using support::MessageOf;

MediaSizeData ReadSize(const std::string& option, MediaSize size)
{
    MediaSizeData data;
    data.Read(
        HandlerOf(MakeTicket(support::MediaFeature(option, size.widthMicrometres, size.heightMicrometres))));
    return data;
}

struct PublishedSize
{
    std::int32_t value;
    std::string name;
    MediaSize size;
    std::int32_t valueWhenRead;
    std::int32_t valueWhenTurned;
};

std::vector<PublishedSize> LoadPublishedSizes()
{
    std::ifstream file("mediasizes.txt");
    std::vector<PublishedSize> sizes;
    for (std::string line; std::getline(file, line);)
    {
        PublishedSize row;
        if (std::istringstream(line) >> row.value >> row.name >> row.size.widthMicrometres >>
            row.size.heightMicrometres >> row.valueWhenRead >> row.valueWhenTurned)
        {
            sizes.push_back(row);
        }
    }
    return sizes;
}

TEST(MediaSizeData, ReadsTurnsAndWritesEveryOption)
{
    const auto published = LoadPublishedSizes();
    ASSERT_EQ(published.size(), 172U);
    ASSERT_EQ(SharedList<MediaSizeOptionSchema>().GetQnames().size(), 172U);
    for (const PublishedSize& row : published)
    {
        SCOPED_TRACE(row.name);
        MediaSizeData data = ReadSize(row.name, row.value < 2 ? row.size : MediaSize());
        EXPECT_EQ(data.GetOptionId(), row.valueWhenRead);
        const PublishedSize& named = published.at(static_cast<std::size_t>(row.valueWhenRead));
        const Qname name{NamespaceId::Keywords, utility::FromUtf8(named.name)};
        EXPECT_EQ(data.GetMediaSizeEntry(), (MediaSizeEntry{name, named.value, row.size}));

        data.Rotate();
        EXPECT_EQ(data.GetSize(), (MediaSize{row.size.heightMicrometres, row.size.widthMicrometres}));
        ASSERT_EQ(data.GetOptionId(), row.valueWhenTurned);
        const Document document = MakeTicket("");
        data.Write(HandlerOf(document));
        EXPECT_EQ(Join(document, "//f:Option/@name | //f:ScoredProperty/@name | //f:Value"),
                  "psk:" + published.at(static_cast<std::size_t>(row.valueWhenTurned)).name +
                      " psk:MediaSizeHeight " + std::to_string(row.size.widthMicrometres) +
                      " psk:MediaSizeWidth " + std::to_string(row.size.heightMicrometres));
    }
}

TEST(MediaSizeData, NamesASizeByTheFirstOptionThatHasIt)
{
    for (const auto& row : support::LoadTable("mediasizenames.txt"))
    {
        MediaSize size;
        std::istringstream(row.at(1)) >> size.widthMicrometres >> size.heightMicrometres;
        MediaSizeData data;
        data.PrintTicketFunctionOption::SetOptionId(std::stoi(row[0]));
        data.SetSize(size);
        EXPECT_EQ(data.GetOptionIdOrNone(), std::stoi(row.at(2))) << row[0] << ": " << row[1];
        EXPECT_EQ(data.GetSize(), size);
    }
}

TEST(MediaSizeData, FollowsAnOptionWithItsSize)
{
    MediaSizeData data;
    EXPECT_EQ(data.GetOptionId(), 9);
    EXPECT_EQ(data.GetSize(), (MediaSize{210000, 297000}));
    data.SetOptionId(99);
    EXPECT_EQ(data.GetOptionId(), 94);
    data.SetOptionId(1);
    EXPECT_EQ(data.GetSize(), (MediaSize{215900, 279400}));
    EXPECT_EQ(data.GetMediaSizeEntry().name.localName, L"PSCustomMediaSize");
    data.SetOptionId(700);
    EXPECT_EQ(data.GetMediaSizeEntry().name.localName, L"CustomMediaSize");
    EXPECT_EQ(data.GetMediaSizeEntry().size, (MediaSize{215900, 279400}));

    // The value after the last one counts as standard but has no entry.
    EXPECT_TRUE(MediaSizeTable::IsStandard(172));
    EXPECT_FALSE(MediaSizeTable::IsStandard(173));
    data.SetOptionId(172);
    EXPECT_EQ(data.GetOptionId(), 700);
    EXPECT_EQ(data.GetSize(), (MediaSize{-1, -1}));
}

TEST(MediaSizeData, TakesAnEntryAsItsOptionAndSize)
{
    const MediaSizeTable& table = MediaSizeTable::Shared();
    EXPECT_EQ(MediaSizeData(table.Lookup(26)).GetOptionId(), 25);
    MediaSizeEntry custom = table.Lookup(1);
    custom.size = {123000, 45000};
    MediaSizeData data(custom);
    EXPECT_EQ(data.GetMediaSizeEntry(), custom);
    EXPECT_TRUE(data.IsLandscape());
    data.SetFeatureId(-1);
    EXPECT_EQ(data.GetFeatureIdOrNone(), -1);
    EXPECT_EQ(data.GetOptionIdOrNone(), -1);
    data.SetFromEntry(table.Lookup(94));
    EXPECT_EQ(data.GetFeatureIdOrNone(), 0);
    EXPECT_EQ(data.GetMediaSizeEntry(), table.Lookup(94));
    data.SetSize({110000, 110000});
    EXPECT_TRUE(data.IsPortrait());
}

TEST(MediaSizeData, RefusesToWriteAStandardOptionOfAnotherSizeAndNamesOfAnotherEnumeration)
{
    const MediaSizeData other = ReadSize("ISOA4", {215900, 279400});
    EXPECT_EQ(MessageOf<std::runtime_error>([&] { other.Write(HandlerOf(MakeTicket(""))); }),
              "base\\xps\\printschema\\mediasizedata(...) : unexpected paper size was specified.\n");
    MediaSizeTable table;
    EXPECT_EQ(MessageOf<std::logic_error>([&] { table.AddEntry(NamespaceId::Keywords, L"ISOA4", 9, {}); }),
              "Encounterd unexpect state.");
}
} // namespace
} // namespace base::xps::printschema
