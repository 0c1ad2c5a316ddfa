#include "base/utility/utf8.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "support/thrown.h"

namespace base::utility
{
namespace
{
TEST(Utf8, ConvertsThereAndBack)
{
    const std::wstring wide = L"a\x00E9\x4E00\xD83D\xDE00";
    const std::string narrow = "a\xC3\xA9\xE4\xB8\x80\xF0\x9F\x98\x80";
    EXPECT_EQ(ToUtf8(wide), narrow);
    EXPECT_EQ(FromUtf8(narrow), wide);
    EXPECT_EQ(ToUtf8(L""), "");
    EXPECT_EQ(FromUtf8(""), L"");
}

TEST(Utf8, AppendsToWhatIsThere)
{
    std::string text = "a";
    AppendUtf8(text, L"bc");
    AppendUtf8(text, L"d\u0080\u00ff");
    // Three bytes for each unit, as much as there is room for; then a pair and half of one.
    AppendUtf8(text, L"\u20ac");
    AppendUtf8(text, L"\U0001f600\xd800");
    AppendUtf8(text, L"");
    EXPECT_EQ(text, "abcd\xc2\x80\xc3\xbf\xe2\x82\xac\xf0\x9f\x98\x80\xef\xbf\xbd");
}

TEST(Utf8, TellsTheSizeOfABufferAndFillsIt)
{
    EXPECT_EQ(WideToMultiByte(L"", nullptr, 0), 1);
    char buffer[3] = {};
    EXPECT_EQ(WideToMultiByte(L"\u00e9", nullptr, 0), 3);
    EXPECT_EQ(WideToMultiByte(L"\u00e9", buffer, 3), 3);
    EXPECT_STREQ(buffer, "\xc3\xa9");
    EXPECT_EQ(WideToMultiByte(L"\u00e9", buffer, 2), 0);
}

TEST(Utf8, NeedsTextToConvert)
{
    EXPECT_EQ(support::MessageOf<std::invalid_argument>([] { WideToMultiByte(nullptr, nullptr, 0); }),
              "base\\utility\\utf8(...) : pWideCharStr is null.\n");
}
} // namespace
} // namespace base::utility
