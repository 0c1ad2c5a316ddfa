#include "base/xps/printschema/rememberedareas.h"

#include <utility>

namespace base::xps::printschema
{
namespace
{
constexpr std::size_t kMostCharacters = std::size_t{2} << 20;
constexpr std::size_t kLongestQuestion = kMostCharacters / 10;
} // namespace

std::optional<ImageableArea> RememberedAreas::Find(const std::wstring& question) const
{
    const auto known = m_areas.find(question);
    return known == m_areas.end() ? std::nullopt : std::optional(known->second);
}

void RememberedAreas::Add(std::wstring question, const ImageableArea& area)
{
    const std::size_t length = question.size();
    if (length > kLongestQuestion)
    {
        return;
    }
    if (m_characters + length > kMostCharacters)
    {
        m_areas.clear();
        m_characters = 0;
    }
    m_areas.emplace(std::move(question), area);
    m_characters += length;
}
} // namespace base::xps::printschema
