#include "base/xps/printschema/vocabulary/mediasizetable.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace base::xps::printschema
{
namespace
{
struct Row
{
    std::int32_t value;
    const wchar_t* fullName;
    std::int32_t widthMicrometres;
    std::int32_t heightMicrometres;
};

// Some rows are irregular on purpose: ISOA4Extra, NorthAmericaLetterPlus and NorthAmericaTabloidExtra have no
// round sizes, JapanYou4EnvelopeRotated is not next to its upright form, and several names share a size.
constexpr Row kRows[] = {
    {-1, L"MediaSizeSchema::OptionUnknown", -1, -1},
    {0, L"MediaSizeSchema::CustomMediaSize", 0, 0},
    {1, L"MediaSizeSchema::PSCustomMediaSize", 0, 0},
    {2, L"MediaSizeSchema::ISOA0", 841000, 1189000},
    {3, L"MediaSizeSchema::ISOA1", 594000, 841000},
    {4, L"MediaSizeSchema::ISOA10", 26000, 37000},
    {5, L"MediaSizeSchema::ISOA2", 420000, 594000},
    {6, L"MediaSizeSchema::ISOA3", 297000, 420000},
    {7, L"MediaSizeSchema::ISOA3Rotated", 420000, 297000},
    {8, L"MediaSizeSchema::ISOA3Extra", 322000, 445000},
    {9, L"MediaSizeSchema::ISOA4", 210000, 297000},
    {10, L"MediaSizeSchema::ISOA4Rotated", 297000, 210000},
    {11, L"MediaSizeSchema::ISOA4Extra", 235500, 322300},
    {12, L"MediaSizeSchema::ISOA5", 148000, 210000},
    {13, L"MediaSizeSchema::ISOA5Rotated", 210000, 148000},
    {14, L"MediaSizeSchema::ISOA5Extra", 174000, 235000},
    {15, L"MediaSizeSchema::ISOA6", 105000, 148000},
    {16, L"MediaSizeSchema::ISOA6Rotated", 148000, 105000},
    {17, L"MediaSizeSchema::ISOA7", 74000, 105000},
    {18, L"MediaSizeSchema::ISOA8", 52000, 74000},
    {19, L"MediaSizeSchema::ISOA9", 37000, 52000},
    {20, L"MediaSizeSchema::ISOB0", 1000000, 1414000},
    {21, L"MediaSizeSchema::ISOB1", 707000, 1000000},
    {22, L"MediaSizeSchema::ISOB10", 31000, 44000},
    {23, L"MediaSizeSchema::ISOB2", 500000, 707000},
    {24, L"MediaSizeSchema::ISOB3", 353000, 500000},
    {25, L"MediaSizeSchema::ISOB4", 250000, 353000},
    {26, L"MediaSizeSchema::ISOB4Envelope", 250000, 353000},
    {27, L"MediaSizeSchema::ISOB5Envelope", 176000, 250000},
    {28, L"MediaSizeSchema::ISOB5Extra", 201000, 276000},
    {29, L"MediaSizeSchema::ISOB7", 88000, 125000},
    {30, L"MediaSizeSchema::ISOB8", 62000, 88000},
    {31, L"MediaSizeSchema::ISOB9", 44000, 62000},
    {32, L"MediaSizeSchema::ISOC0", 917000, 1297000},
    {33, L"MediaSizeSchema::ISOC1", 648000, 917000},
    {34, L"MediaSizeSchema::ISOC10", 28000, 40000},
    {35, L"MediaSizeSchema::ISOC2", 458000, 648000},
    {36, L"MediaSizeSchema::ISOC3", 324000, 458000},
    {37, L"MediaSizeSchema::ISOC3Envelope", 324000, 458000},
    {38, L"MediaSizeSchema::ISOC4", 229000, 324000},
    {39, L"MediaSizeSchema::ISOC4Envelope", 229000, 324000},
    {40, L"MediaSizeSchema::ISOC5", 162000, 229000},
    {41, L"MediaSizeSchema::ISOC5Envelope", 162000, 229000},
    {42, L"MediaSizeSchema::ISOC6", 114000, 162000},
    {43, L"MediaSizeSchema::ISOC6Envelope", 114000, 162000},
    {44, L"MediaSizeSchema::ISOC6C5Envelope", 114000, 229000},
    {45, L"MediaSizeSchema::ISOC7", 81000, 114000},
    {46, L"MediaSizeSchema::ISOC8", 57000, 81000},
    {47, L"MediaSizeSchema::ISOC9", 40000, 57000},
    {48, L"MediaSizeSchema::ISODLEnvelope", 110000, 220000},
    {49, L"MediaSizeSchema::ISODLEnvelopeRotated", 220000, 110000},
    {50, L"MediaSizeSchema::ISOSRA3", 320000, 450000},
    {51, L"MediaSizeSchema::JapanQuadrupleHagakiPostcard", 200000, 296000},
    {52, L"MediaSizeSchema::JISB0", 1030000, 1456000},
    {53, L"MediaSizeSchema::JISB1", 728000, 1030000},
    {54, L"MediaSizeSchema::JISB10", 32000, 45000},
    {55, L"MediaSizeSchema::JISB2", 515000, 728000},
    {56, L"MediaSizeSchema::JISB3", 364000, 515000},
    {57, L"MediaSizeSchema::JISB4", 257000, 364000},
    {58, L"MediaSizeSchema::JISB4Rotated", 364000, 257000},
    {59, L"MediaSizeSchema::JISB5", 182000, 257000},
    {60, L"MediaSizeSchema::JISB5Rotated", 257000, 182000},
    {61, L"MediaSizeSchema::JISB6", 128000, 182000},
    {62, L"MediaSizeSchema::JISB6Rotated", 182000, 128000},
    {63, L"MediaSizeSchema::JISB7", 91000, 128000},
    {64, L"MediaSizeSchema::JISB8", 64000, 91000},
    {65, L"MediaSizeSchema::JISB9", 45000, 64000},
    {66, L"MediaSizeSchema::JapanChou3Envelope", 120000, 235000},
    {67, L"MediaSizeSchema::JapanChou3EnvelopeRotated", 235000, 120000},
    {68, L"MediaSizeSchema::JapanChou4Envelope", 90000, 205000},
    {69, L"MediaSizeSchema::JapanChou4EnvelopeRotated", 205000, 90000},
    {70, L"MediaSizeSchema::JapanHagakiPostcard", 100000, 148000},
    {71, L"MediaSizeSchema::JapanHagakiPostcardRotated", 148000, 100000},
    {72, L"MediaSizeSchema::JapanKaku2Envelope", 240000, 332000},
    {73, L"MediaSizeSchema::JapanKaku2EnvelopeRotated", 332000, 240000},
    {74, L"MediaSizeSchema::JapanKaku3Envelope", 216000, 277000},
    {75, L"MediaSizeSchema::JapanKaku3EnvelopeRotated", 277000, 216000},
    {76, L"MediaSizeSchema::JapanYou4Envelope", 105000, 235000},
    {77, L"MediaSizeSchema::NorthAmerica10x11", 254000, 279400},
    {78, L"MediaSizeSchema::NorthAmerica10x14", 254000, 355600},
    {79, L"MediaSizeSchema::NorthAmerica11x17", 279400, 431800},
    {80, L"MediaSizeSchema::NorthAmerica9x11", 228600, 279400},
    {81, L"MediaSizeSchema::NorthAmericaArchitectureASheet", 228600, 304800},
    {82, L"MediaSizeSchema::NorthAmericaArchitectureBSheet", 304800, 457200},
    {83, L"MediaSizeSchema::NorthAmericaArchitectureCSheet", 457200, 609600},
    {84, L"MediaSizeSchema::NorthAmericaArchitectureDSheet", 609600, 914400},
    {85, L"MediaSizeSchema::NorthAmericaArchitectureESheet", 914400, 1219200},
    {86, L"MediaSizeSchema::NorthAmericaCSheet", 431800, 558800},
    {87, L"MediaSizeSchema::NorthAmericaDSheet", 558800, 863600},
    {88, L"MediaSizeSchema::NorthAmericaESheet", 863600, 1117600},
    {89, L"MediaSizeSchema::NorthAmericaExecutive", 184150, 266700},
    {90, L"MediaSizeSchema::NorthAmericaGermanLegalFanfold", 215900, 330200},
    {91, L"MediaSizeSchema::NorthAmericaGermanStandardFanfold", 215900, 304800},
    {92, L"MediaSizeSchema::NorthAmericaLegal", 215900, 355600},
    {93, L"MediaSizeSchema::NorthAmericaLegalExtra", 241300, 381000},
    {94, L"MediaSizeSchema::NorthAmericaLetter", 215900, 279400},
    {95, L"MediaSizeSchema::NorthAmericaLetterRotated", 279400, 215900},
    {96, L"MediaSizeSchema::NorthAmericaLetterExtra", 241300, 304800},
    {97, L"MediaSizeSchema::NorthAmericaLetterPlus", 215900, 322326},
    {98, L"MediaSizeSchema::NorthAmericaMonarchEnvelope", 98425, 177800},
    {99, L"MediaSizeSchema::NorthAmericaNote", 215900, 279400},
    {100, L"MediaSizeSchema::NorthAmericaNumber10Envelope", 104775, 241300},
    {101, L"MediaSizeSchema::NorthAmericaNumber10EnvelopeRotated", 241300, 104775},
    {102, L"MediaSizeSchema::NorthAmericaNumber9Envelope", 98425, 225425},
    {103, L"MediaSizeSchema::NorthAmericaNumber11Envelope", 114300, 263525},
    {104, L"MediaSizeSchema::NorthAmericaNumber12Envelope", 120650, 279400},
    {105, L"MediaSizeSchema::NorthAmericaNumber14Envelope", 127000, 292100},
    {106, L"MediaSizeSchema::NorthAmericaPersonalEnvelope", 92075, 165100},
    {107, L"MediaSizeSchema::NorthAmericaQuarto", 215000, 275000},
    {108, L"MediaSizeSchema::NorthAmericaStatement", 139700, 215900},
    {109, L"MediaSizeSchema::NorthAmericaSuperA", 227000, 356000},
    {110, L"MediaSizeSchema::NorthAmericaSuperB", 305000, 487000},
    {111, L"MediaSizeSchema::NorthAmericaTabloid", 279400, 431800},
    {112, L"MediaSizeSchema::NorthAmericaTabloidExtra", 296926, 457200},
    {113, L"MediaSizeSchema::OtherMetricA4Plus", 210000, 330000},
    {114, L"MediaSizeSchema::OtherMetricA3Plus", 329000, 483000},
    {115, L"MediaSizeSchema::OtherMetricFolio", 215900, 330200},
    {116, L"MediaSizeSchema::OtherMetricInviteEnvelope", 220000, 220000},
    {117, L"MediaSizeSchema::OtherMetricItalianEnvelope", 110000, 230000},
    {118, L"MediaSizeSchema::PRC1Envelope", 102000, 165000},
    {119, L"MediaSizeSchema::PRC1EnvelopeRotated", 165000, 102000},
    {120, L"MediaSizeSchema::PRC10Envelope", 324000, 458000},
    {121, L"MediaSizeSchema::PRC10EnvelopeRotated", 458000, 324000},
    {122, L"MediaSizeSchema::PRC16K", 146000, 215000},
    {123, L"MediaSizeSchema::PRC16KRotated", 215000, 146000},
    {124, L"MediaSizeSchema::PRC2Envelope", 102000, 176000},
    {125, L"MediaSizeSchema::PRC2EnvelopeRotated", 176000, 102000},
    {126, L"MediaSizeSchema::PRC32K", 97000, 151000},
    {127, L"MediaSizeSchema::PRC32KRotated", 151000, 97000},
    {128, L"MediaSizeSchema::PRC32KBig", 97000, 151000},
    {129, L"MediaSizeSchema::PRC3Envelope", 125000, 176000},
    {130, L"MediaSizeSchema::PRC3EnvelopeRotated", 176000, 125000},
    {131, L"MediaSizeSchema::PRC4Envelope", 110000, 208000},
    {132, L"MediaSizeSchema::PRC4EnvelopeRotated", 208000, 110000},
    {133, L"MediaSizeSchema::PRC5Envelope", 110000, 220000},
    {134, L"MediaSizeSchema::PRC5EnvelopeRotated", 220000, 110000},
    {135, L"MediaSizeSchema::PRC6Envelope", 120000, 230000},
    {136, L"MediaSizeSchema::PRC6EnvelopeRotated", 230000, 120000},
    {137, L"MediaSizeSchema::PRC7Envelope", 160000, 230000},
    {138, L"MediaSizeSchema::PRC7EnvelopeRotated", 230000, 160000},
    {139, L"MediaSizeSchema::PRC8Envelope", 120000, 309000},
    {140, L"MediaSizeSchema::PRC8EnvelopeRotated", 309000, 120000},
    {141, L"MediaSizeSchema::PRC9Envelope", 229000, 324000},
    {142, L"MediaSizeSchema::PRC9EnvelopeRotated", 324000, 229000},
    {143, L"MediaSizeSchema::Roll04Inch", 101600, 0},
    {144, L"MediaSizeSchema::Roll06Inch", 152400, 0},
    {145, L"MediaSizeSchema::Roll08Inch", 203200, 0},
    {146, L"MediaSizeSchema::Roll12Inch", 304800, 0},
    {147, L"MediaSizeSchema::Roll15Inch", 381000, 0},
    {148, L"MediaSizeSchema::Roll18Inch", 457200, 0},
    {149, L"MediaSizeSchema::Roll22Inch", 558800, 0},
    {150, L"MediaSizeSchema::Roll24Inch", 609600, 0},
    {151, L"MediaSizeSchema::Roll30Inch", 762000, 0},
    {152, L"MediaSizeSchema::Roll36Inch", 914400, 0},
    {153, L"MediaSizeSchema::Roll54Inch", 1371600, 0},
    {154, L"MediaSizeSchema::JapanDoubleHagakiPostcard", 200000, 148000},
    {155, L"MediaSizeSchema::JapanDoubleHagakiPostcardRotated", 148000, 200000},
    {156, L"MediaSizeSchema::JapanLPhoto", 89000, 127000},
    {157, L"MediaSizeSchema::Japan2LPhoto", 127000, 178000},
    {158, L"MediaSizeSchema::JapanYou1Envelope", 120000, 176000},
    {159, L"MediaSizeSchema::JapanYou2Envelope", 114000, 162000},
    {160, L"MediaSizeSchema::JapanYou3Envelope", 98000, 148000},
    {161, L"MediaSizeSchema::JapanYou4EnvelopeRotated", 235000, 105000},
    {162, L"MediaSizeSchema::JapanYou6Envelope", 98000, 190000},
    {163, L"MediaSizeSchema::JapanYou6EnvelopeRotated", 190000, 98000},
    {164, L"MediaSizeSchema::NorthAmerica4x6", 101600, 152400},
    {165, L"MediaSizeSchema::NorthAmerica4x8", 101600, 203200},
    {166, L"MediaSizeSchema::NorthAmerica5x7", 127000, 177800},
    {167, L"MediaSizeSchema::NorthAmerica8x10", 203200, 254000},
    {168, L"MediaSizeSchema::NorthAmerica10x12", 254000, 304800},
    {169, L"MediaSizeSchema::NorthAmerica14x17", 355600, 431800},
    {170, L"MediaSizeSchema::BusinessCard", 55000, 91000},
    {171, L"MediaSizeSchema::CreditCard", 54000, 86000},
};
} // namespace

MediaSizeTable::MediaSizeTable()
{
    for (const Row& row : kRows)
    {
        AddEntry(
            NamespaceId::Keywords, row.fullName, row.value, {row.widthMicrometres, row.heightMicrometres});
    }
}

const MediaSizeTable& MediaSizeTable::Shared()
{
    static const MediaSizeTable table;
    return table;
}

void MediaSizeTable::AddEntry(NamespaceId namespaceId,
                              const std::wstring& fullName,
                              std::int32_t value,
                              MediaSize size)
{
    constexpr std::wstring_view prefix = L"MediaSizeSchema::";
    const std::size_t position = fullName.find(prefix);
    if (position == std::wstring::npos)
    {
        throw std::logic_error("Encounterd unexpect state.");
    }
    std::wstring optionName = fullName;
    optionName.erase(position, prefix.size());
    m_entries.emplace(value, MediaSizeEntry{{namespaceId, std::move(optionName)}, value, size});
}

const MediaSizeEntry& MediaSizeTable::Lookup(std::int32_t value) const
{
    const auto found = m_entries.find(value);
    return found == m_entries.end() ? m_entries.at(kOptionUnknown) : found->second;
}

const MediaSizeEntry& MediaSizeTable::LookupBySize(MediaSize size) const
{
    const auto found = std::ranges::find(m_entries, size, [](const auto& item) { return item.second.size; });
    return found == m_entries.end() ? m_entries.at(kOptionUnknown) : found->second;
}
} // namespace base::xps::printschema
