#include <array>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/filterpipeline.h"
#include "platform/printerextension.h"

// The pipeline is the other side of a binary contract that no header of the platform checks for us: what
// our declarations call must be the slot, and ask for the id, that the platform documents.
namespace
{
int g_calledSlot = -1;

template <int Slot>
HRESULT STDMETHODCALLTYPE RecordSlot(void*)
{
    g_calledSlot = Slot;
    return S_OK;
}

template <std::size_t... Slots>
constexpr auto MakeTable(std::index_sequence<Slots...>)
{
    return std::array{&RecordSlot<static_cast<int>(Slots)>...};
}

template <typename Argument>
Argument Any()
{
    static std::remove_cvref_t<Argument> value{};
    return value;
}

/// The slot that a call of `method` reaches.
template <typename Interface, typename Result, typename... Arguments>
int SlotOf(Result (STDMETHODCALLTYPE Interface::*method)(Arguments...))
{
    static constexpr auto table = MakeTable(std::make_index_sequence<24>());
    const auto* object = table.data();
    void* const handBuilt = &object;
    g_calledSlot = -1;
    (static_cast<Interface*>(handBuilt)->*method)(Any<Arguments>()...);
    return g_calledSlot;
}

/// The documented id, and the documented methods from the slot `first` on.
template <typename Interface, typename... Methods>
void Expect(const std::string& id, int first, Methods... methods)
{
    SCOPED_TRACE(id);
    wchar_t text[39];
    StringFromGUID2(__uuidof(Interface), text, 39);
    EXPECT_EQ(std::string(text + 1, text + 37), id);
    for (const int slot : std::vector<int>{SlotOf<Interface>(methods)...})
    {
        EXPECT_EQ(slot, first++);
    }
}

// clang-format off
TEST(PlatformInterfaces, CarryTheDocumentedIdsAndMethodsInTheirSlots)
{
    using Read = IPrintReadStream;
    using Write = IPrintWriteStream;
    using Bag = IPrintPipelinePropertyBag;
    using Control = IPrintPipelineManagerControl;
    using Filter = IPrintPipelineFilter;
    using Consumer = IXpsDocumentConsumer;
    using Sequence = IFixedDocumentSequence;
    using Page = IFixedPage;
    using Parts = IXpsPartIterator;
    using Driver = IPrinterPropertyBag;
    Expect<Read>("4D47A67C-66CC-4430-850E-DAF466FE5BC4", 3, &Read::Seek, &Read::ReadBytes);
    Expect<Write>("65BB7F1B-371E-4571-8AC7-912F510C1A38", 3, &Write::WriteBytes, &Write::Close);
    Expect<IPrintWriteStreamFlush>("07D11FF8-1753-4873-B749-6CDAF068E4C3", 3,
        &IPrintWriteStreamFlush::FlushData);
    Expect<IPrintReadStreamFactory>("ACB971E3-DF8D-4FC2-BEE6-0609D15F3CF9", 3,
        &IPrintReadStreamFactory::GetStream);
    Expect<IInterFilterCommunicator>("4DAF1E69-81FD-462D-940F-8CD3DDF56FCA", 3,
        &IInterFilterCommunicator::RequestReader, &IInterFilterCommunicator::RequestWriter);
    Expect<Control>("AA3E4910-5889-4681-91EF-823AD4ED4E44", 3, &Control::RequestShutdown,
        &Control::FilterFinished);
    Expect<Bag>("8B8C99DC-7892-4A95-8A04-57422E9FBB47", 3, &Bag::AddProperty, &Bag::GetProperty,
        &Bag::DeleteProperty);
    Expect<IPrintPipelineProgressReport>("EDC12C7C-ED40-4EA5-96A6-5E4397497A61", 3,
        &IPrintPipelineProgressReport::ReportProgress);
    Expect<IPrintClassObjectFactory>("9AF593DD-9B02-48A8-9BAD-69ACE423F88B", 3,
        &IPrintClassObjectFactory::GetPrintClassObject);
    Expect<Filter>("CDB62FC0-8BED-434E-86FB-A2CAE55F19EA", 3,
        &Filter::InitializeFilter, &Filter::ShutdownOperation, &Filter::StartOperation);
    Expect<IXpsDocumentProvider>("B8CF8530-5562-47C4-AB67-B1F69ECF961E", 3,
        &IXpsDocumentProvider::GetXpsPart);
    Expect<Consumer>("4368D8A2-4181-4A9F-B295-3D9A38BB9BA0", 3,
        &Consumer::SendXpsUnknown, &Consumer::SendXpsDocument, &Consumer::SendFixedDocumentSequence,
        &Consumer::SendFixedDocument, &Consumer::SendFixedPage, &Consumer::CloseSender,
        &Consumer::GetNewEmptyPart);
    Expect<IXpsDocument>("E8D907DB-62A9-4A95-ABE7-E01763DD30F8", 3,
        &IXpsDocument::GetThumbnail, &IXpsDocument::SetThumbnail);
    Expect<Sequence>("8028D181-2C32-4249-8493-1BFB22045574", 3,
        &Sequence::GetUri, &Sequence::GetPrintTicket, &Sequence::SetPrintTicket);
    Expect<IFixedDocument>("F222CA9F-9968-4DB9-81BD-ABAEBF15F93F", 3,
        &IFixedDocument::GetUri, &IFixedDocument::GetPrintTicket, &IFixedDocument::SetPrintTicket);
    Expect<IPartBase>("36D51E28-369E-43BA-A666-9540C62C3F58", 3, &IPartBase::GetUri, &IPartBase::GetStream,
        &IPartBase::GetPartCompression, &IPartBase::SetPartCompression);
    Expect<Page>("3D9F6448-7E95-4CB5-94FB-0180C2883A57", 7,
        &Page::GetPrintTicket, &Page::GetPagePart, &Page::GetWriteStream, &Page::SetPrintTicket,
        &Page::SetPagePart, &Page::DeleteResource, &Page::GetXpsPartIterator);
    Expect<IPartImage>("725F2E3C-401A-4705-9DE0-FE6F1353B87F", 7,
        &IPartImage::GetImageProperties, &IPartImage::SetImageContent);
    Expect<IPartFont>("E07FE0AB-1124-43D0-A865-E8FFB6A3EA82", 7,
        &IPartFont::GetFontProperties, &IPartFont::SetFontContent, &IPartFont::SetFontOptions);
    Expect<IPartFont2>("511E025F-D6CB-43BE-BF65-63FE88515A39", 10, &IPartFont2::GetFontRestriction);
    Expect<IPartThumbnail>("027ED1C9-BA39-4CC5-AA55-7EC3A0DE171A", 7,
        &IPartThumbnail::GetThumbnailProperties, &IPartThumbnail::SetThumbnailContent);
    Expect<IPartPrintTicket>("4A0F50F6-F9A2-41F0-99E7-5AE955BE8E9E", 3);
    Expect<IPartColorProfile>("63CCA95B-7D18-4762-B15E-98658693D24A", 3);
    Expect<IPartResourceDictionary>("16CFCE6D-E744-4FB3-B474-F1D54F024A01", 3);
    Expect<Parts>("0021D3CD-AF6F-42AB-9999-14BC82A62D2E", 3,
        &Parts::Reset, &Parts::Current, &Parts::IsDone, &Parts::Next);
    Expect<IPartDiscardControl>("CC350C00-095B-42A5-BF0F-C8780EDADB3C", 3,
        &IPartDiscardControl::GetDiscardProperties);
    // Behind the slots of automation.
    Expect<Driver>("FEA77364-DF95-4A23-A905-019B79A8E481", 7,
        &Driver::GetBool, &Driver::SetBool, &Driver::GetInt32, &Driver::SetInt32, &Driver::GetString,
        &Driver::SetString, &Driver::GetBytes, &Driver::SetBytes, &Driver::GetReadStream,
        &Driver::GetWriteStream);
}
// clang-format on
} // namespace
