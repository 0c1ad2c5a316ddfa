#pragma once

#include "base/xps/printschema/printticketfunctionoption.h"
#include "base/xps/printschema/vocabulary/mediasizetable.h"

namespace base::xps::printschema
{
/// PageMediaSize: the sheet's name and size. Setting one sets the other. They disagree only after reading a
/// ticket in which they disagree, or if the size is 0 x 0. Initially "ISOA4".
class MediaSizeData final : public SingleScopeFeature
{
public:
    MediaSizeData();
    explicit MediaSizeData(const MediaSizeEntry& entry);

    MediaSize GetSize() const noexcept { return m_size; }

    /// Sets the option to the first one of this size. If no option has this size: keeps an option that is
    /// custom already, else sets "CustomMediaSize". 0 x 0 does not change the option.
    void SetSize(MediaSize size);

    void SetFromEntry(const MediaSizeEntry& entry);

    /// Swaps width and height.
    void Rotate();

    /// A square counts as portrait.
    bool IsPortrait() const noexcept { return m_size.widthMicrometres <= m_size.heightMicrometres; }
    bool IsLandscape() const noexcept { return !IsPortrait(); }

    /// The option's entry, with the accessor's size for a custom option. Throws InvalidOptionIdError without
    /// an option.
    MediaSizeEntry GetMediaSizeEntry() const;

    /// Sets the size too. Of several options with one size, the first becomes the option.
    void SetOptionId(std::int32_t id) override;

    const SchemaBase& GetFeatureSchema() const override;
    const SchemaBase& GetOptionSchema() const override;

    /// Reads width and height from the ticket, whatever the option is. If either is missing, uses the
    /// option's size; throws std::runtime_error for an option without a size.
    void ReadParameters(PrintSchemaHandler handler, const Qname& feature) override;

    /// Throws std::runtime_error if a standard option has a size that is not its own.
    void WriteParameters(PrintSchemaHandler handler, IXMLDOMElement* option, Scope scope) const override;

    /// The id, or -1 if it is not set.
    virtual std::int32_t GetOptionIdOrNone() const;
    virtual std::int32_t GetFeatureIdOrNone() const;

private:
    MediaSize m_size;
};
} // namespace base::xps::printschema
