#include "base/xps/printschema/tickets/imageableareacache.h"

#include <utility>

namespace base::xps::printschema
{
namespace
{
constexpr std::size_t kMaximumCharacters = std::size_t{2} << 20;
constexpr std::size_t kMaximumKeyLength = kMaximumCharacters / 10;
} // namespace

const ImageableAreaCache::Area* ImageableAreaCache::Find(const std::wstring& key) const
{
    const auto found = m_areas.find(key);
    return found == m_areas.end() ? nullptr : &found->second;
}

void ImageableAreaCache::Add(std::wstring key, const Area& area)
{
    const std::size_t length = key.size();
    if (length > kMaximumKeyLength)
    {
        return;
    }
    if (m_characters + length > kMaximumCharacters)
    {
        m_areas.clear();
        m_characters = 0;
    }
    m_areas.emplace(std::move(key), area);
    m_characters += length;
}
} // namespace base::xps::printschema
