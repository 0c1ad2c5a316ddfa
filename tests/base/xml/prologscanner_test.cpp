#include "base/xml/prologscanner.h"

#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace base::xml
{
namespace
{
constexpr auto kUndecided = PrologVerdict::Undecided;
constexpr auto kAccepted = PrologVerdict::Accepted;
constexpr auto kRefused = PrologVerdict::Refused;

PrologVerdict Scan(const std::string& bytes, std::size_t portion)
{
    PrologScanner scanner;
    PrologVerdict verdict = kUndecided;
    for (std::size_t at = 0; at < bytes.size(); at += portion)
    {
        verdict = scanner.Take(std::string_view(bytes).substr(at, portion));
    }
    return verdict;
}

std::string Widen(const std::string& text, bool bigEndian)
{
    std::string bytes;
    for (const char c : text)
    {
        bytes.append({bigEndian ? '\0' : c, bigEndian ? c : '\0'});
    }
    return bytes;
}

TEST(PrologScanner, LetsOnlyCommentsAndInstructionsStandBeforeTheRoot)
{
    const std::vector<std::pair<std::string, PrologVerdict>> cases = {
        {"<a/>", kAccepted},
        {"<a><!DOCTYPE b></a>", kAccepted},
        {"<?xml version='1.0'?>\r\n\t <!-- <!DOCTYPE a> --><?p <!DOCTYPE a> ?><a/>", kAccepted},
        {"<!----><a/>", kAccepted},
        {"<!-- - -- ->--><a/>", kAccepted},
        {"<?p > ? ?><a/>", kAccepted},
        {"<?a?\?><a/>", kAccepted},
        {"<?xml version='1.0' encoding=\"Utf-8\" standalone = 'yes' ?><a/>", kAccepted},
        {"<?xml\tencoding='UTF-16'?><a/>", kAccepted},
        {"<?xm-encoding='gbk'?><?xml-a encoding='gbk'?><?p encoding='gbk'?><a/>", kAccepted},
        {"<?p " + std::string(2000, '?') + "?><a/>", kAccepted},
        {"<?xml version='1.0' encoding='gbk'?><a/>", kRefused},
        {"<?xml version='encoding=\"utf-8\"' encoding='gbk'?><a/>", kRefused},
        {"<?xml encoding?><a/>", kRefused},
        {"<?xml encoding='utf-8?><a/>", kRefused},
        {"<?xml " + std::string(2000, ' ') + "?><a/>", kRefused},
        {"<!DOCTYPE a><a/>", kRefused},
        {"<?xml version='1.0'?><!-- - --> <?p?>\n<!DOCTYPE a><a/>", kRefused},
        {"<!doctype a><a/>", kRefused},
        {"<!-a--><a/>", kRefused},
        {"<![CDATA[a]]><a/>", kRefused},
        {"x<a/>", kRefused},
        {"<!--><a/>--><!DOCTYPE a><a/>", kRefused},
        {"<!--->--><!DOCTYPE a><a/>", kRefused},
        {"<?>?><!DOCTYPE a><a/>", kRefused},
        {"", kUndecided},
        {"   ", kUndecided},
        {"<!-- <a/>", kUndecided},
        {"<?xml version='1.0'>", kUndecided},
    };
    for (const auto& [text, expected] : cases)
    {
        for (const std::size_t portion : {1U, 3U, 4096U})
        {
            EXPECT_EQ(Scan(text, portion), expected) << text << portion;
            EXPECT_EQ(Scan("\xEF\xBB\xBF" + text, portion), expected) << text << portion;
            EXPECT_EQ(Scan("\xFF\xFE" + Widen(text, false), portion), expected) << text << portion;
            EXPECT_EQ(Scan("\xFE\xFF" + Widen(text, true), portion), expected) << text << portion;
            EXPECT_EQ(Scan(Widen(text, false), portion), expected) << text << portion;
            EXPECT_EQ(Scan(Widen(text, true), portion), expected) << text << portion;
        }
    }
}

TEST(PrologScanner, RefusesWhatIsInNoEncodingOfMarkup)
{
    EXPECT_EQ(Scan(std::string("<\0\0\0!\0\0\0", 8), 8), kRefused);
    EXPECT_EQ(Scan(std::string("\0\0\0<\0\0\0!", 8), 8), kRefused);
    EXPECT_EQ(Scan("\x4C\x5A\xC4\xD6\xC3\xE3\xE8\xD7\xC5", 9), kRefused);
    EXPECT_EQ(Scan("+ADwAIQ-DOCTYPE a>", 18), kRefused);
    EXPECT_EQ(Scan("\xEF\xBB\xBF\xEF\xBB\xBF<!DOCTYPE a>", 18), kRefused);
}
} // namespace
} // namespace base::xml
