#include "base/xps/printschema/mediasizedata.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

#include <gtest/gtest.h>

#include "base/xps/printschema/keywordlists.h"
#include "support/failures.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using tests::Document;
using tests::Feature;
using tests::HandlerOf;
using tests::Integers;
using tests::MakeTicket;
using tests::MessageOf;
using tests::Names;

MediaSizeData ReadSize(const std::wstring& option, const std::wstring& properties)
{
    const std::wstring content = Integers(L"ScoredProperty", L"psk:MediaSize", properties);
    MediaSizeData data;
    data.Read(HandlerOf(MakeTicket(Feature(L"psk:PageMediaSize", option, content))));
    return data;
}

struct PublishedSize
{
    std::int32_t value = 0;
    std::wstring name;
    MediaSize size;
    std::int32_t valueWhenRead = 0;
    std::int32_t valueWhenTurned = 0;
};

std::vector<PublishedSize> LoadPublishedSizes()
{
    std::wifstream file("mediasizes.txt");
    std::vector<PublishedSize> sizes;
    for (std::wstring line; std::getline(file, line);)
    {
        PublishedSize row;
        if (std::wistringstream(line) >> row.value >> row.name >> row.size.widthMicrometres >>
            row.size.heightMicrometres >> row.valueWhenRead >> row.valueWhenTurned)
        {
            sizes.push_back(row);
        }
    }
    return sizes;
}

TEST(MediaSizeData, ReadsTurnsAndWritesEveryOption)
{
    const std::vector<PublishedSize> published = LoadPublishedSizes();
    ASSERT_EQ(published.size(), 172U);
    ASSERT_EQ(SharedList<MediaSizeOptionSchema>().GetQnames().size(), 172U);
    for (const PublishedSize& row : published)
    {
        SCOPED_TRACE(testing::Message() << row.value);
        const std::wstring width = std::to_wstring(row.size.widthMicrometres);
        const std::wstring height = std::to_wstring(row.size.heightMicrometres);
        const bool isCustom = row.value < 2;
        MediaSizeData data =
            ReadSize(L"psk:" + row.name, isCustom ? L"Width=" + width + L" Height=" + height : L"");
        EXPECT_EQ(SharedList<MediaSizeOptionSchema>().IndexOf(NamespaceId::Keywords, row.name), row.value);
        EXPECT_EQ(data.GetSize(), row.size);
        EXPECT_EQ(data.GetOptionId(), row.valueWhenRead);
        const PublishedSize& named = published[static_cast<std::size_t>(row.valueWhenRead)];
        EXPECT_EQ(data.GetMediaSizeEntry(),
                  (MediaSizeEntry{{NamespaceId::Keywords, named.name}, named.value, row.size}));

        data.Rotate();
        EXPECT_EQ(data.GetSize(), (MediaSize{row.size.heightMicrometres, row.size.widthMicrometres}));
        ASSERT_EQ(data.GetOptionId(), row.valueWhenTurned);

        const Document document = MakeTicket(L"");
        data.Write(HandlerOf(document));
        const PublishedSize& turned = published[static_cast<std::size_t>(row.valueWhenTurned)];
        EXPECT_EQ(Names(document, L"//psf:Feature/psf:Option"), L"psk:" + turned.name);
        EXPECT_EQ(Names(document, L"//psf:Option/psf:ScoredProperty"),
                  L"psk:MediaSizeHeight psk:MediaSizeWidth");
        EXPECT_EQ(Names(document, L"//psf:Option/psf:ScoredProperty/psf:Value"), width + L" " + height);
        MediaSizeData again;
        again.Read(HandlerOf(document));
        EXPECT_EQ(again.GetMediaSizeEntry(), data.GetMediaSizeEntry());
    }
}

TEST(MediaSizeData, NamesASizeByTheFirstOptionThatHasIt)
{
    constexpr std::int32_t unset = -1;
    const struct
    {
        std::int32_t before;
        MediaSize size;
        std::int32_t after;
    } cases[] = {
        {9, {297000, 210000}, 10},
        {9, {250000, 353000}, 25},
        {9, {200000, 200000}, 0},
        {0, {200000, 200000}, 0},
        {1, {200000, 200000}, 1},
        {unset, {200000, 200000}, 0},
        {500, {200000, 200000}, 500},
        {1, {215900, 279400}, 94},
        {9, {0, 0}, 9},
        {1, {0, 0}, 1},
        {9, {215900, 279401}, 0},
        {9, {-1, -1}, 0},
    };
    for (const auto& row : cases)
    {
        MediaSizeData data;
        data.PrintTicketFunctionOption::SetOptionId(row.before);
        data.SetSize(row.size);
        EXPECT_EQ(data.GetOptionIdOrNone(), row.after) << row.before << ' ' << row.size.widthMicrometres;
        EXPECT_EQ(data.GetSize(), row.size);
    }
}

TEST(MediaSizeData, FollowsAnOptionWithItsSize)
{
    MediaSizeData data;
    EXPECT_EQ(data.GetOptionId(), 9);
    EXPECT_EQ(data.GetSize(), (MediaSize{210000, 297000}));
    EXPECT_EQ(data.GetScope(), Scope::Page);
    EXPECT_TRUE(data.IsPortrait());
    data.SetOptionId(99);
    EXPECT_EQ(data.GetOptionId(), 94);
    data.SetOptionId(1);
    EXPECT_EQ(data.GetOptionId(), 1);
    EXPECT_EQ(data.GetSize(), (MediaSize{215900, 279400}));
    EXPECT_EQ(data.GetMediaSizeEntry().name.localName, L"PSCustomMediaSize");
    data.SetOptionId(700);
    EXPECT_EQ(data.GetMediaSizeEntry().name.localName, L"CustomMediaSize");
    EXPECT_EQ(data.GetMediaSizeEntry().size, (MediaSize{215900, 279400}));

    // One past the last value still counts as standard, but has no entry.
    MediaSizeData past;
    EXPECT_EQ(MediaSizeTable::Shared().Lookup(172).value, -1);
    EXPECT_TRUE(MediaSizeTable::IsStandard(172));
    EXPECT_FALSE(MediaSizeTable::IsStandard(173));
    past.SetOptionId(172);
    EXPECT_EQ(past.GetOptionId(), 0);
    EXPECT_EQ(past.GetSize(), (MediaSize{-1, -1}));
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

TEST(MediaSizeData, ReadsForgivinglyAndWritesStrictly)
{
    // A standard option with another size is read, and cannot be written.
    const MediaSizeData other = ReadSize(L"psk:ISOA4", L"Width=215900 Height=279400");
    EXPECT_EQ(other.GetSize(), (MediaSize{215900, 279400}));
    const Document document = MakeTicket(L"");
    EXPECT_EQ(MessageOf<std::runtime_error>([&] { other.Write(HandlerOf(document)); }),
              "base\\xps\\printschema\\mediasizedata(...) : unexpected paper size was specified.\n");
    EXPECT_EQ(Names(document, L"//psf:Feature"), L"");
}
} // namespace
} // namespace base::xps::printschema
