#pragma once

#include "base/xps/printschema/printticketfunctionoption.h"
#include "base/xps/printschema/vocabulary/mediasizetable.h"

namespace base::xps::printschema
{
/// PageMediaSize: the sheet's name and its size. Setting either makes the other follow, so that they agree
/// unless a ticket that was read has it otherwise, or the size is none. Starts out as "ISOA4".
class MediaSizeData final : public SingleScopeFeature
{
public:
    MediaSizeData();
    explicit MediaSizeData(const MediaSizeEntry& entry);

    MediaSize GetSize() const noexcept { return m_size; }

    /// The option becomes the first of this size, or "CustomMediaSize"; a custom option stays what it is at a
    /// size without a name. 0 x 0 leaves the option.
    void SetSize(MediaSize size);

    void SetFromEntry(const MediaSizeEntry& entry);

    /// Swaps width and height.
    void Rotate();

    /// A square counts as portrait.
    bool IsPortrait() const noexcept { return m_size.widthMicrometres <= m_size.heightMicrometres; }
    bool IsLandscape() const noexcept { return !IsPortrait(); }

    /// The option's entry; a custom one with the accessor's own size. Throws InvalidOptionIdError without an
    /// option.
    MediaSizeEntry GetMediaSizeEntry() const;

    /// The size follows; of several options with one size the first is taken.
    void SetOptionId(std::int32_t id) override;

    const SchemaBase& GetFeatureSchema() const override;
    const SchemaBase& GetOptionSchema() const override;

    /// Takes the ticket's width and height, whatever the option. Without both, the option's own size; throws
    /// std::runtime_error when it has none.
    void ReadParameters(PrintSchemaHandler handler, const Qname& feature) override;

    /// Throws std::runtime_error when a standard option has another size than its own.
    void WriteParameters(PrintSchemaHandler handler, IXMLDOMElement* option, Scope scope) const override;

    /// The ids, or -1 while they are not set.
    virtual std::int32_t GetOptionIdOrNone() const;
    virtual std::int32_t GetFeatureIdOrNone() const;

private:
    MediaSize m_size;
};
} // namespace base::xps::printschema
