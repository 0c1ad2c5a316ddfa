#include <array>
#include <functional>
#include <string>
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

/// The slot that `call` reaches through the declaration of Interface.
template <typename Interface>
int SlotOf(const std::function<void(Interface&)>& call)
{
    static constexpr auto table = MakeTable(std::make_index_sequence<24>());
    const auto* object = table.data();
    void* const handBuilt = &object;
    g_calledSlot = -1;
    call(*static_cast<Interface*>(handBuilt));
    return g_calledSlot;
}

template <typename Interface>
std::string IdOf()
{
    wchar_t text[39];
    StringFromGUID2(__uuidof(Interface), text, 39);
    return std::string(text + 1, text + 37);
}

TEST(PlatformInterfaces, CarryTheDocumentedIds)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
        {IdOf<IPrintReadStream>(), "4D47A67C-66CC-4430-850E-DAF466FE5BC4"},
        {IdOf<IPrintWriteStream>(), "65BB7F1B-371E-4571-8AC7-912F510C1A38"},
        {IdOf<IPrintWriteStreamFlush>(), "07D11FF8-1753-4873-B749-6CDAF068E4C3"},
        {IdOf<IPrintReadStreamFactory>(), "ACB971E3-DF8D-4FC2-BEE6-0609D15F3CF9"},
        {IdOf<IInterFilterCommunicator>(), "4DAF1E69-81FD-462D-940F-8CD3DDF56FCA"},
        {IdOf<IPrintPipelineManagerControl>(), "AA3E4910-5889-4681-91EF-823AD4ED4E44"},
        {IdOf<IPrintPipelinePropertyBag>(), "8B8C99DC-7892-4A95-8A04-57422E9FBB47"},
        {IdOf<IPrintPipelineProgressReport>(), "EDC12C7C-ED40-4EA5-96A6-5E4397497A61"},
        {IdOf<IPrintClassObjectFactory>(), "9AF593DD-9B02-48A8-9BAD-69ACE423F88B"},
        {IdOf<IPrintPipelineFilter>(), "CDB62FC0-8BED-434E-86FB-A2CAE55F19EA"},
        {IdOf<IXpsDocumentProvider>(), "B8CF8530-5562-47C4-AB67-B1F69ECF961E"},
        {IdOf<IXpsDocumentConsumer>(), "4368D8A2-4181-4A9F-B295-3D9A38BB9BA0"},
        {IdOf<IXpsDocument>(), "E8D907DB-62A9-4A95-ABE7-E01763DD30F8"},
        {IdOf<IFixedDocumentSequence>(), "8028D181-2C32-4249-8493-1BFB22045574"},
        {IdOf<IFixedDocument>(), "F222CA9F-9968-4DB9-81BD-ABAEBF15F93F"},
        {IdOf<IPartBase>(), "36D51E28-369E-43BA-A666-9540C62C3F58"},
        {IdOf<IFixedPage>(), "3D9F6448-7E95-4CB5-94FB-0180C2883A57"},
        {IdOf<IPartImage>(), "725F2E3C-401A-4705-9DE0-FE6F1353B87F"},
        {IdOf<IPartFont>(), "E07FE0AB-1124-43D0-A865-E8FFB6A3EA82"},
        {IdOf<IPartFont2>(), "511E025F-D6CB-43BE-BF65-63FE88515A39"},
        {IdOf<IPartThumbnail>(), "027ED1C9-BA39-4CC5-AA55-7EC3A0DE171A"},
        {IdOf<IPartPrintTicket>(), "4A0F50F6-F9A2-41F0-99E7-5AE955BE8E9E"},
        {IdOf<IPartColorProfile>(), "63CCA95B-7D18-4762-B15E-98658693D24A"},
        {IdOf<IPartResourceDictionary>(), "16CFCE6D-E744-4FB3-B474-F1D54F024A01"},
        {IdOf<IXpsPartIterator>(), "0021D3CD-AF6F-42AB-9999-14BC82A62D2E"},
        {IdOf<IPartDiscardControl>(), "CC350C00-095B-42A5-BF0F-C8780EDADB3C"},
        {IdOf<IPrinterPropertyBag>(), "FEA77364-DF95-4A23-A905-019B79A8E481"},
    };
    for (const auto& [declared, documented] : cases)
    {
        EXPECT_EQ(declared, documented);
    }
}

TEST(PlatformInterfaces, PutStreamsInTheirSlots)
{
    EXPECT_EQ(SlotOf<IPrintReadStream>([](auto& i) { i.Seek(0, 0, nullptr); }), 3);
    EXPECT_EQ(SlotOf<IPrintReadStream>([](auto& i) { i.ReadBytes(nullptr, 0, nullptr, nullptr); }), 4);
    EXPECT_EQ(SlotOf<IPrintWriteStream>([](auto& i) { i.WriteBytes(nullptr, 0, nullptr); }), 3);
    EXPECT_EQ(SlotOf<IPrintWriteStream>([](auto& i) { i.Close(); }), 4);
    EXPECT_EQ(SlotOf<IPrintWriteStreamFlush>([](auto& i) { i.FlushData(); }), 3);
    EXPECT_EQ(SlotOf<IPrintReadStreamFactory>([](auto& i) { i.GetStream(nullptr); }), 3);
}

TEST(PlatformInterfaces, PutPipelineCallsInTheirSlots)
{
    EXPECT_EQ(SlotOf<IInterFilterCommunicator>([](auto& i) { i.RequestReader(nullptr); }), 3);
    EXPECT_EQ(SlotOf<IInterFilterCommunicator>([](auto& i) { i.RequestWriter(nullptr); }), 4);
    EXPECT_EQ(SlotOf<IPrintPipelinePropertyBag>([](auto& i) { i.AddProperty(nullptr, nullptr); }), 3);
    EXPECT_EQ(SlotOf<IPrintPipelinePropertyBag>([](auto& i) { i.GetProperty(nullptr, nullptr); }), 4);
    EXPECT_EQ(SlotOf<IPrintPipelinePropertyBag>([](auto& i) { i.DeleteProperty(nullptr); }), 5);
    EXPECT_EQ(SlotOf<IPrintPipelineManagerControl>([](auto& i) { i.RequestShutdown(S_OK, nullptr); }), 3);
    EXPECT_EQ(SlotOf<IPrintPipelineManagerControl>([](auto& i) { i.FilterFinished(); }), 4);
    EXPECT_EQ(SlotOf<IPrintPipelineProgressReport>([](auto& i) { i.ReportProgress(XpsJob_FixedPageAdded); }),
              3);
    EXPECT_EQ(SlotOf<IPrintClassObjectFactory>(
                  [](auto& i) { i.GetPrintClassObject(nullptr, __uuidof(IUnknown), nullptr); }),
              3);
    EXPECT_EQ(SlotOf<IPrintPipelineFilter>([](auto& i) { i.InitializeFilter(nullptr, nullptr, nullptr); }),
              3);
    EXPECT_EQ(SlotOf<IPrintPipelineFilter>([](auto& i) { i.ShutdownOperation(); }), 4);
    EXPECT_EQ(SlotOf<IPrintPipelineFilter>([](auto& i) { i.StartOperation(); }), 5);
}

TEST(PlatformInterfaces, PutTheDocumentTreeInItsSlots)
{
    EXPECT_EQ(SlotOf<IXpsDocumentProvider>([](auto& i) { i.GetXpsPart(nullptr); }), 3);
    EXPECT_EQ(SlotOf<IXpsDocumentConsumer>([](auto& i) { i.SendXpsUnknown(nullptr); }), 3);
    EXPECT_EQ(SlotOf<IXpsDocumentConsumer>([](auto& i) { i.SendXpsDocument(nullptr); }), 4);
    EXPECT_EQ(SlotOf<IXpsDocumentConsumer>([](auto& i) { i.SendFixedDocumentSequence(nullptr); }), 5);
    EXPECT_EQ(SlotOf<IXpsDocumentConsumer>([](auto& i) { i.SendFixedDocument(nullptr); }), 6);
    EXPECT_EQ(SlotOf<IXpsDocumentConsumer>([](auto& i) { i.SendFixedPage(nullptr); }), 7);
    EXPECT_EQ(SlotOf<IXpsDocumentConsumer>([](auto& i) { i.CloseSender(); }), 8);
    EXPECT_EQ(SlotOf<IXpsDocumentConsumer>(
                  [](auto& i) { i.GetNewEmptyPart(nullptr, __uuidof(IUnknown), nullptr, nullptr); }),
              9);
    EXPECT_EQ(SlotOf<IXpsDocument>([](auto& i) { i.GetThumbnail(nullptr); }), 3);
    EXPECT_EQ(SlotOf<IXpsDocument>([](auto& i) { i.SetThumbnail(nullptr); }), 4);
    EXPECT_EQ(SlotOf<IFixedDocumentSequence>([](auto& i) { i.GetUri(nullptr); }), 3);
    EXPECT_EQ(SlotOf<IFixedDocumentSequence>([](auto& i) { i.GetPrintTicket(nullptr); }), 4);
    EXPECT_EQ(SlotOf<IFixedDocumentSequence>([](auto& i) { i.SetPrintTicket(nullptr); }), 5);
    EXPECT_EQ(SlotOf<IFixedDocument>([](auto& i) { i.GetUri(nullptr); }), 3);
    EXPECT_EQ(SlotOf<IFixedDocument>([](auto& i) { i.GetPrintTicket(nullptr); }), 4);
    EXPECT_EQ(SlotOf<IFixedDocument>([](auto& i) { i.SetPrintTicket(nullptr); }), 5);
}

TEST(PlatformInterfaces, PutPartsInTheirSlots)
{
    EXPECT_EQ(SlotOf<IPartBase>([](auto& i) { i.GetUri(nullptr); }), 3);
    EXPECT_EQ(SlotOf<IPartPrintTicket>([](auto& i) { i.GetStream(nullptr); }), 4);
    EXPECT_EQ(SlotOf<IPartColorProfile>([](auto& i) { i.GetPartCompression(nullptr); }), 5);
    EXPECT_EQ(
        SlotOf<IPartResourceDictionary>([](auto& i) { i.SetPartCompression(Compression_NotCompressed); }), 6);
    EXPECT_EQ(SlotOf<IFixedPage>([](auto& i) { i.GetPrintTicket(nullptr); }), 7);
    EXPECT_EQ(SlotOf<IFixedPage>([](auto& i) { i.GetPagePart(nullptr, nullptr); }), 8);
    EXPECT_EQ(SlotOf<IFixedPage>([](auto& i) { i.GetWriteStream(nullptr); }), 9);
    EXPECT_EQ(SlotOf<IFixedPage>([](auto& i) { i.SetPrintTicket(nullptr); }), 10);
    EXPECT_EQ(SlotOf<IFixedPage>([](auto& i) { i.SetPagePart(nullptr); }), 11);
    EXPECT_EQ(SlotOf<IFixedPage>([](auto& i) { i.DeleteResource(nullptr); }), 12);
    EXPECT_EQ(SlotOf<IFixedPage>([](auto& i) { i.GetXpsPartIterator(nullptr); }), 13);
    EXPECT_EQ(SlotOf<IPartImage>([](auto& i) { i.GetImageProperties(nullptr); }), 7);
    EXPECT_EQ(SlotOf<IPartImage>([](auto& i) { i.SetImageContent(nullptr); }), 8);
    EXPECT_EQ(SlotOf<IPartFont>([](auto& i) { i.GetFontProperties(nullptr, nullptr); }), 7);
    EXPECT_EQ(SlotOf<IPartFont>([](auto& i) { i.SetFontContent(nullptr); }), 8);
    EXPECT_EQ(SlotOf<IPartFont>([](auto& i) { i.SetFontOptions(Font_Normal); }), 9);
    EXPECT_EQ(SlotOf<IPartFont2>([](auto& i) { i.GetFontRestriction(nullptr); }), 10);
    EXPECT_EQ(SlotOf<IPartThumbnail>([](auto& i) { i.GetThumbnailProperties(nullptr); }), 7);
    EXPECT_EQ(SlotOf<IPartThumbnail>([](auto& i) { i.SetThumbnailContent(nullptr); }), 8);
    EXPECT_EQ(SlotOf<IXpsPartIterator>([](auto& i) { i.Reset(); }), 3);
    EXPECT_EQ(SlotOf<IXpsPartIterator>([](auto& i) { i.Current(nullptr, nullptr); }), 4);
    EXPECT_EQ(SlotOf<IXpsPartIterator>([](auto& i) { i.IsDone(); }), 5);
    EXPECT_EQ(SlotOf<IXpsPartIterator>([](auto& i) { i.Next(); }), 6);
    EXPECT_EQ(SlotOf<IPartDiscardControl>([](auto& i) { i.GetDiscardProperties(nullptr, nullptr); }), 3);
}

TEST(PlatformInterfaces, PutDriverPropertiesBehindAutomation)
{
    EXPECT_EQ(SlotOf<IPrinterPropertyBag>([](auto& i) { i.GetBool(nullptr, nullptr); }), 7);
    EXPECT_EQ(SlotOf<IPrinterPropertyBag>([](auto& i) { i.SetBool(nullptr, FALSE); }), 8);
    EXPECT_EQ(SlotOf<IPrinterPropertyBag>([](auto& i) { i.GetInt32(nullptr, nullptr); }), 9);
    EXPECT_EQ(SlotOf<IPrinterPropertyBag>([](auto& i) { i.SetInt32(nullptr, 0); }), 10);
    EXPECT_EQ(SlotOf<IPrinterPropertyBag>([](auto& i) { i.GetString(nullptr, nullptr); }), 11);
    EXPECT_EQ(SlotOf<IPrinterPropertyBag>([](auto& i) { i.SetString(nullptr, nullptr); }), 12);
    EXPECT_EQ(SlotOf<IPrinterPropertyBag>([](auto& i) { i.GetBytes(nullptr, nullptr, nullptr); }), 13);
    EXPECT_EQ(SlotOf<IPrinterPropertyBag>([](auto& i) { i.SetBytes(nullptr, 0, nullptr); }), 14);
    EXPECT_EQ(SlotOf<IPrinterPropertyBag>([](auto& i) { i.GetReadStream(nullptr, nullptr); }), 15);
    EXPECT_EQ(SlotOf<IPrinterPropertyBag>([](auto& i) { i.GetWriteStream(nullptr, nullptr); }), 16);
}
} // namespace
