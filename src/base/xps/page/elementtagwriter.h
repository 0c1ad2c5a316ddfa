#pragma once

#include <ostream>
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

    virtual std::string CleanTagText(std::string text) const = 0;
    virtual std::string MakeStartTag(std::string text) const = 0;
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
    std::string CleanTagText(std::string text) const override;
    std::string MakeStartTag(std::string text) const override;
    /// The element's name is what stands before the first blank.
    std::string MakeEndTag(const std::string& text) const override;

    /// Makes the start tag of the text in its place, so that its owner can use its memory for the next one.
    void WriteStartTag(std::string& text);

    /// Forgets the end tags, for an element that failed half-way.
    void DropEndTags() noexcept { m_endTags.clear(); }

private:
    // In the order in which they are to be written.
    std::string m_endTags;
    std::ostream* m_pOutput;
};
} // namespace base::xps
