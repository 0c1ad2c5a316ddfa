#include "base/xps/page/pagebox.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>

#include "base/logging/failure.h"
#include "base/logging/log.h"
#include "base/xps/page/markuptext.h"

namespace base::xps
{
namespace
{
constexpr const char* kWrongCount = "the value comma deliminated should consist 4 value.";
} // namespace

PageBox ParseBox(const std::wstring& text)
{
    if (text.empty())
    {
        exception::Throw<std::invalid_argument>("text is empty.");
    }
    std::array<float, 4> numbers{};
    std::size_t count = 0;
    std::wstring_view rest = text;
    while (!rest.empty())
    {
        const std::wstring_view token = rest.substr(0, rest.find(L','));
        rest.remove_prefix(std::min(token.size() + 1, rest.size()));
        if (token.empty())
        {
            continue;
        }
        if (count == numbers.size())
        {
            exception::Throw<std::invalid_argument>(kWrongCount);
        }
        numbers[count++] = static_cast<float>(ToNumber(token));
    }
    if (count < numbers.size())
    {
        exception::Throw<std::invalid_argument>(kWrongCount);
    }
    const auto [x, y, width, height] = numbers;
    return {x, y, x + width, y + height};
}

std::wstring FormatBox(float first, float second, float third, float fourth)
{
    return logging::FormatWString(L"%.2f,%.2f,%.2f,%.2f",
                                  static_cast<double>(first),
                                  static_cast<double>(second),
                                  static_cast<double>(third),
                                  static_cast<double>(fourth));
}

PageBox MoveBox(const PageBox& box, float x, float y) noexcept
{
    return {x, y, x + box.Width(), y + box.Height()};
}
} // namespace base::xps
