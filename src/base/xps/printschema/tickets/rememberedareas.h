#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>

#include "base/xps/printschema/vocabulary/imageablearea.h"

namespace base::xps::printschema
{
/// Answers to questions that are told apart by their text. Their number has no bound but their size: where
/// the texts would come to more than four megabytes all are forgotten, and a question of more than a tenth of
/// that is never remembered.
class RememberedAreas
{
public:
    /// What a printer answers; nothing where it has no answer.
    using Answer = std::optional<ImageableSize>;

    /// Null for a question that is not remembered; lent until the next one is added.
    const Answer* Find(const std::wstring& question) const;
    void Add(std::wstring question, const Answer& answer);

private:
    std::map<std::wstring, Answer> m_answers;
    std::size_t m_characters = 0;
};
} // namespace base::xps::printschema
