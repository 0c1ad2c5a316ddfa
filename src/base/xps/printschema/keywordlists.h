#pragma once

#include "base/xps/printschema/schemabase.h"

// The names of the features that the filter reads and writes, and of their options. A list of feature names
// has either the names for job, document and page, in this order, or one name, which serves every scope.
namespace base::xps::printschema
{
class PageMediaSizeFeatureSchema final : public SchemaBase
{
public:
    PageMediaSizeFeatureSchema();
};

/// The options of MediaSizeTable; an option's index is its value in that table.
class MediaSizeOptionSchema final : public SchemaBase
{
public:
    MediaSizeOptionSchema();
};

class InputBinFeatureSchema final : public SchemaBase
{
public:
    InputBinFeatureSchema();
};

class InputBinOptionSchema final : public SchemaBase
{
public:
    InputBinOptionSchema();
};

/// The values of an input bin's FeedDirection.
class FeedDirectionSchema final : public SchemaBase
{
public:
    FeedDirectionSchema();
};

class PageOrientationFeatureSchema final : public SchemaBase
{
public:
    PageOrientationFeatureSchema();
};

class PageOrientationOptionSchema final : public SchemaBase
{
public:
    PageOrientationOptionSchema();
};

class PageScalingFeatureSchema final : public SchemaBase
{
public:
    PageScalingFeatureSchema();
};

class PageScalingOptionSchema final : public SchemaBase
{
public:
    PageScalingOptionSchema();
};

class PrintableMediaSizeFeatureSchema final : public SchemaBase
{
public:
    PrintableMediaSizeFeatureSchema();
};

class PrintableMediaSizeOptionSchema final : public SchemaBase
{
public:
    PrintableMediaSizeOptionSchema();
};

/// The shared instance of a list.
template <typename List>
const List& SharedList()
{
    static const List list;
    return list;
}
} // namespace base::xps::printschema
