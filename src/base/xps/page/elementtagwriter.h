#pragma once

#include <ostream>
#include <string>

namespace base::xps
{
/// Makes tags from an element's name and attributes, in UTF-8.
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

/// Writes start tags immediately, and their end tags in reverse order on destruction. The stream must outlive
/// it; the stream's state tells of a failed write.
class ElementTagWriter final : public TagWriterBase
{
public:
    explicit ElementTagWriter(std::ostream& output) : m_pOutput(&output) {}
    ~ElementTagWriter() override;

    /// Removes blanks, then angle brackets, from both ends.
    std::string CleanTagText(std::string text) const override;
    std::string MakeStartTag(std::string text) const override;
    /// The element's name is the text before the first blank.
    std::string MakeEndTag(const std::string& text) const override;

    /// Turns the text into a start tag in place and writes it; the caller can reuse the string's memory.
    void WriteStartTag(std::string& text);

    /// Discards the end tags of an element that could not be written.
    void DropEndTags() noexcept { m_endTags.clear(); }

private:
    // In the order of writing.
    std::string m_endTags;
    std::ostream* m_pOutput;
};
} // namespace base::xps
