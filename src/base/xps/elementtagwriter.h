#pragma once

#include <ostream>
#include <stack>
#include <string>

namespace base::xps
{
/// Makes tags of an element's name and attributes, in UTF-8.
class TagWriterBase
{
public:
    TagWriterBase() = default;
    TagWriterBase(const TagWriterBase&) = delete;
    TagWriterBase& operator=(const TagWriterBase&) = delete;
    virtual ~TagWriterBase() = default;

    virtual std::string CleanTagText(const std::string& text) const = 0;
    virtual std::string MakeStartTag(const std::string& text) const = 0;
    virtual std::string MakeEndTag(const std::string& text) const = 0;
};

/// Writes start tags at once and their end tags, in reverse order, when it goes. The stream outlives it and
/// reports a failed write by its state.
class ElementTagWriter final : public TagWriterBase
{
public:
    explicit ElementTagWriter(std::ostream& output) : m_pOutput(&output) {}
    ~ElementTagWriter() override;

    /// Without blanks, then without angle brackets, at both ends.
    std::string CleanTagText(const std::string& text) const override;
    std::string MakeStartTag(const std::string& text) const override;
    /// The element's name is what stands before the first blank.
    std::string MakeEndTag(const std::string& text) const override;

    void WriteStartTag(const std::string& text);

    /// Forgets the end tags, for an element that failed half-way.
    void DropEndTags() noexcept;

private:
    std::stack<std::string> m_endTags;
    std::ostream* m_pOutput;
};
} // namespace base::xps
