#include "base/xps/printschema/tickets/rememberedareas.h"

#include <utility>

namespace base::xps::printschema
{
namespace
{
constexpr std::size_t kMostCharacters = std::size_t{2} << 20;
constexpr std::size_t kLongestQuestion = kMostCharacters / 10;
} // namespace

const RememberedAreas::Answer* RememberedAreas::Find(const std::wstring& question) const
{
    const auto known = m_answers.find(question);
    return known == m_answers.end() ? nullptr : &known->second;
}

void RememberedAreas::Add(std::wstring question, const Answer& answer)
{
    const std::size_t length = question.size();
    if (length > kLongestQuestion)
    {
        return;
    }
    if (m_characters + length > kMostCharacters)
    {
        m_answers.clear();
        m_characters = 0;
    }
    m_answers.emplace(std::move(question), answer);
    m_characters += length;
}
} // namespace base::xps::printschema
