#pragma once

#include "platform/win32.h"

#ifdef __filterpipeline_h__
#error "The platform's own filterpipeline.h declares the same interfaces: include one of the two"
#endif

// The print filter pipeline of the XPS print path, as the platform documents it: MinGW-w64 has no
// filterpipeline.h, and with the Windows SDK these declarations serve, too, so that every compiler sees the
// same. Every method is STDMETHODCALLTYPE and returns an HRESULT unless it is declared otherwise; BOOL is the
// 32-bit one. What comes back through an out-pointer belongs to the caller.

enum EXpsCompressionOptions
{
    Compression_NotCompressed = 0,
    Compression_Normal = 1,
    Compression_Small = 2,
    Compression_Fast = 3
};

enum EXpsFontOptions
{
    Font_Normal = 0,
    Font_Obfusticate = 1
};

enum EXpsJobConsumption
{
    XpsJob_DocumentSequenceAdded = 0,
    XpsJob_FixedDocumentAdded = 1,
    XpsJob_FixedPageAdded = 2
};

enum EXpsFontRestriction
{
    Xps_Restricted_Font_Installable = 0,
    Xps_Restricted_Font_NoEmbedding = 2,
    Xps_Restricted_Font_PreviewPrint = 4,
    Xps_Restricted_Font_Editable = 8
};

// Details of an error for RequestShutdown; the pipeline makes no use of it, so that nobody builds one.
struct IImgErrorInfo;

// The streams that carry part content through the pipeline. ReadBytes and WriteBytes may be short; Close
// is due exactly once for every write stream.

struct DECLSPEC_UUID("4D47A67C-66CC-4430-850E-DAF466FE5BC4") IPrintReadStream : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE Seek(LONGLONG move, DWORD origin, ULONGLONG* newPosition) = 0;
    virtual HRESULT STDMETHODCALLTYPE ReadBytes(void* buffer,
                                                ULONG requested,
                                                ULONG* read,
                                                BOOL* endOfFile) = 0;
};
__CRT_UUID_DECL(IPrintReadStream, 0x4D47A67C, 0x66CC, 0x4430, 0x85, 0x0E, 0xDA, 0xF4, 0x66, 0xFE, 0x5B, 0xC4)

struct DECLSPEC_UUID("65BB7F1B-371E-4571-8AC7-912F510C1A38") IPrintWriteStream : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE WriteBytes(const void* buffer, ULONG count, ULONG* written) = 0;
    virtual void STDMETHODCALLTYPE Close() = 0;
};
__CRT_UUID_DECL(IPrintWriteStream, 0x65BB7F1B, 0x371E, 0x4571, 0x8A, 0xC7, 0x91, 0x2F, 0x51, 0x0C, 0x1A, 0x38)

struct DECLSPEC_UUID("07D11FF8-1753-4873-B749-6CDAF068E4C3") IPrintWriteStreamFlush : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE FlushData() = 0;
};
__CRT_UUID_DECL(
    IPrintWriteStreamFlush, 0x07D11FF8, 0x1753, 0x4873, 0xB7, 0x49, 0x6C, 0xDA, 0xF0, 0x68, 0xE4, 0xC3)

struct DECLSPEC_UUID("ACB971E3-DF8D-4FC2-BEE6-0609D15F3CF9") IPrintReadStreamFactory : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetStream(IPrintReadStream** stream) = 0;
};
__CRT_UUID_DECL(
    IPrintReadStreamFactory, 0xACB971E3, 0xDF8D, 0x4FC2, 0xBE, 0xE6, 0x06, 0x09, 0xD1, 0x5F, 0x3C, 0xF9)

// Parts that hang on a page or on the document, and the page's way through them.

struct DECLSPEC_UUID("36D51E28-369E-43BA-A666-9540C62C3F58") IPartBase : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetUri(BSTR* uri) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetStream(IPrintReadStream** stream) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPartCompression(EXpsCompressionOptions* compression) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetPartCompression(EXpsCompressionOptions compression) = 0;
};
__CRT_UUID_DECL(IPartBase, 0x36D51E28, 0x369E, 0x43BA, 0xA6, 0x66, 0x95, 0x40, 0xC6, 0x2C, 0x3F, 0x58)

struct DECLSPEC_UUID("725F2E3C-401A-4705-9DE0-FE6F1353B87F") IPartImage : public IPartBase
{
    virtual HRESULT STDMETHODCALLTYPE GetImageProperties(BSTR* contentType) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetImageContent(const wchar_t* contentType) = 0;
};
__CRT_UUID_DECL(IPartImage, 0x725F2E3C, 0x401A, 0x4705, 0x9D, 0xE0, 0xFE, 0x6F, 0x13, 0x53, 0xB8, 0x7F)

struct DECLSPEC_UUID("E07FE0AB-1124-43D0-A865-E8FFB6A3EA82") IPartFont : public IPartBase
{
    virtual HRESULT STDMETHODCALLTYPE GetFontProperties(BSTR* contentType, EXpsFontOptions* options) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetFontContent(const wchar_t* contentType) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetFontOptions(EXpsFontOptions options) = 0;
};
__CRT_UUID_DECL(IPartFont, 0xE07FE0AB, 0x1124, 0x43D0, 0xA8, 0x65, 0xE8, 0xFF, 0xB6, 0xA3, 0xEA, 0x82)

struct DECLSPEC_UUID("511E025F-D6CB-43BE-BF65-63FE88515A39") IPartFont2 : public IPartFont
{
    virtual HRESULT STDMETHODCALLTYPE GetFontRestriction(EXpsFontRestriction* restriction) = 0;
};
__CRT_UUID_DECL(IPartFont2, 0x511E025F, 0xD6CB, 0x43BE, 0xBF, 0x65, 0x63, 0xFE, 0x88, 0x51, 0x5A, 0x39)

struct DECLSPEC_UUID("027ED1C9-BA39-4CC5-AA55-7EC3A0DE171A") IPartThumbnail : public IPartBase
{
    virtual HRESULT STDMETHODCALLTYPE GetThumbnailProperties(BSTR* contentType) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetThumbnailContent(const wchar_t* contentType) = 0;
};
__CRT_UUID_DECL(IPartThumbnail, 0x027ED1C9, 0xBA39, 0x4CC5, 0xAA, 0x55, 0x7E, 0xC3, 0xA0, 0xDE, 0x17, 0x1A)

struct DECLSPEC_UUID("4A0F50F6-F9A2-41F0-99E7-5AE955BE8E9E") IPartPrintTicket : public IPartBase
{
};
__CRT_UUID_DECL(IPartPrintTicket, 0x4A0F50F6, 0xF9A2, 0x41F0, 0x99, 0xE7, 0x5A, 0xE9, 0x55, 0xBE, 0x8E, 0x9E)

struct DECLSPEC_UUID("63CCA95B-7D18-4762-B15E-98658693D24A") IPartColorProfile : public IPartBase
{
};
__CRT_UUID_DECL(IPartColorProfile, 0x63CCA95B, 0x7D18, 0x4762, 0xB1, 0x5E, 0x98, 0x65, 0x86, 0x93, 0xD2, 0x4A)

struct DECLSPEC_UUID("16CFCE6D-E744-4FB3-B474-F1D54F024A01") IPartResourceDictionary : public IPartBase
{
};
__CRT_UUID_DECL(
    IPartResourceDictionary, 0x16CFCE6D, 0xE744, 0x4FB3, 0xB4, 0x74, 0xF1, 0xD5, 0x4F, 0x02, 0x4A, 0x01)

struct DECLSPEC_UUID("0021D3CD-AF6F-42AB-9999-14BC82A62D2E") IXpsPartIterator : public IUnknown
{
    virtual void STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Current(BSTR* uri, IUnknown** part) = 0;
    virtual BOOL STDMETHODCALLTYPE IsDone() = 0;
    virtual void STDMETHODCALLTYPE Next() = 0;
};
__CRT_UUID_DECL(IXpsPartIterator, 0x0021D3CD, 0xAF6F, 0x42AB, 0x99, 0x99, 0x14, 0xBC, 0x82, 0xA6, 0x2D, 0x2E)

struct DECLSPEC_UUID("CC350C00-095B-42A5-BF0F-C8780EDADB3C") IPartDiscardControl : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetDiscardProperties(BSTR* sentinelPageUri,
                                                           BSTR* discardablePartUri) = 0;
};
__CRT_UUID_DECL(
    IPartDiscardControl, 0xCC350C00, 0x095B, 0x42A5, 0xBF, 0x0F, 0xC8, 0x78, 0x0E, 0xDA, 0xDB, 0x3C)

// The document tree, its provider (null part: end of the document) and its consumer.

struct DECLSPEC_UUID("E8D907DB-62A9-4A95-ABE7-E01763DD30F8") IXpsDocument : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetThumbnail(IPartThumbnail** thumbnail) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetThumbnail(IPartThumbnail* thumbnail) = 0;
};
__CRT_UUID_DECL(IXpsDocument, 0xE8D907DB, 0x62A9, 0x4A95, 0xAB, 0xE7, 0xE0, 0x17, 0x63, 0xDD, 0x30, 0xF8)

struct DECLSPEC_UUID("8028D181-2C32-4249-8493-1BFB22045574") IFixedDocumentSequence : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetUri(BSTR* uri) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPrintTicket(IPartPrintTicket** ticket) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetPrintTicket(IPartPrintTicket* ticket) = 0;
};
__CRT_UUID_DECL(
    IFixedDocumentSequence, 0x8028D181, 0x2C32, 0x4249, 0x84, 0x93, 0x1B, 0xFB, 0x22, 0x04, 0x55, 0x74)

struct DECLSPEC_UUID("F222CA9F-9968-4DB9-81BD-ABAEBF15F93F") IFixedDocument : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetUri(BSTR* uri) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPrintTicket(IPartPrintTicket** ticket) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetPrintTicket(IPartPrintTicket* ticket) = 0;
};
__CRT_UUID_DECL(IFixedDocument, 0xF222CA9F, 0x9968, 0x4DB9, 0x81, 0xBD, 0xAB, 0xAE, 0xBF, 0x15, 0xF9, 0x3F)

struct DECLSPEC_UUID("3D9F6448-7E95-4CB5-94FB-0180C2883A57") IFixedPage : public IPartBase
{
    virtual HRESULT STDMETHODCALLTYPE GetPrintTicket(IPartPrintTicket** ticket) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPagePart(const wchar_t* uri, IUnknown** part) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetWriteStream(IPrintWriteStream** stream) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetPrintTicket(IPartPrintTicket* ticket) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetPagePart(IUnknown* part) = 0;
    virtual HRESULT STDMETHODCALLTYPE DeleteResource(const wchar_t* uri) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetXpsPartIterator(IXpsPartIterator** iterator) = 0;
};
__CRT_UUID_DECL(IFixedPage, 0x3D9F6448, 0x7E95, 0x4CB5, 0x94, 0xFB, 0x01, 0x80, 0xC2, 0x88, 0x3A, 0x57)

struct DECLSPEC_UUID("B8CF8530-5562-47C4-AB67-B1F69ECF961E") IXpsDocumentProvider : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetXpsPart(IUnknown** part) = 0;
};
__CRT_UUID_DECL(
    IXpsDocumentProvider, 0xB8CF8530, 0x5562, 0x47C4, 0xAB, 0x67, 0xB1, 0xF6, 0x9E, 0xCF, 0x96, 0x1E)

struct DECLSPEC_UUID("4368D8A2-4181-4A9F-B295-3D9A38BB9BA0") IXpsDocumentConsumer : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE SendXpsUnknown(IUnknown* part) = 0;
    virtual HRESULT STDMETHODCALLTYPE SendXpsDocument(IXpsDocument* document) = 0;
    virtual HRESULT STDMETHODCALLTYPE SendFixedDocumentSequence(IFixedDocumentSequence* sequence) = 0;
    virtual HRESULT STDMETHODCALLTYPE SendFixedDocument(IFixedDocument* document) = 0;
    virtual HRESULT STDMETHODCALLTYPE SendFixedPage(IFixedPage* page) = 0;
    virtual HRESULT STDMETHODCALLTYPE CloseSender() = 0;
    virtual HRESULT STDMETHODCALLTYPE GetNewEmptyPart(const wchar_t* uri,
                                                      REFIID iid,
                                                      void** newPart,
                                                      IPrintWriteStream** stream) = 0;
};
__CRT_UUID_DECL(
    IXpsDocumentConsumer, 0x4368D8A2, 0x4181, 0x4A9F, 0xB2, 0x95, 0x3D, 0x9A, 0x38, 0xBB, 0x9B, 0xA0)

// What the pipeline hands to a filter, and the filter itself.

struct DECLSPEC_UUID("4DAF1E69-81FD-462D-940F-8CD3DDF56FCA") IInterFilterCommunicator : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE RequestReader(void** reader) = 0;
    virtual HRESULT STDMETHODCALLTYPE RequestWriter(void** writer) = 0;
};
__CRT_UUID_DECL(
    IInterFilterCommunicator, 0x4DAF1E69, 0x81FD, 0x462D, 0x94, 0x0F, 0x8C, 0xD3, 0xDD, 0xF5, 0x6F, 0xCA)

struct DECLSPEC_UUID("8B8C99DC-7892-4A95-8A04-57422E9FBB47") IPrintPipelinePropertyBag : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE AddProperty(const wchar_t* name, const VARIANT* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetProperty(const wchar_t* name, VARIANT* value) = 0;
    virtual BOOL STDMETHODCALLTYPE DeleteProperty(const wchar_t* name) = 0;
};
__CRT_UUID_DECL(
    IPrintPipelinePropertyBag, 0x8B8C99DC, 0x7892, 0x4A95, 0x8A, 0x04, 0x57, 0x42, 0x2E, 0x9F, 0xBB, 0x47)

struct DECLSPEC_UUID("AA3E4910-5889-4681-91EF-823AD4ED4E44") IPrintPipelineManagerControl : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE RequestShutdown(HRESULT reason, IImgErrorInfo* errorInfo) = 0;
    virtual HRESULT STDMETHODCALLTYPE FilterFinished() = 0;
};
__CRT_UUID_DECL(
    IPrintPipelineManagerControl, 0xAA3E4910, 0x5889, 0x4681, 0x91, 0xEF, 0x82, 0x3A, 0xD4, 0xED, 0x4E, 0x44)

struct DECLSPEC_UUID("EDC12C7C-ED40-4EA5-96A6-5E4397497A61") IPrintPipelineProgressReport : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE ReportProgress(EXpsJobConsumption update) = 0;
};
__CRT_UUID_DECL(
    IPrintPipelineProgressReport, 0xEDC12C7C, 0xED40, 0x4EA5, 0x96, 0xA6, 0x5E, 0x43, 0x97, 0x49, 0x7A, 0x61)

struct DECLSPEC_UUID("9AF593DD-9B02-48A8-9BAD-69ACE423F88B") IPrintClassObjectFactory : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetPrintClassObject(const wchar_t* printerName,
                                                          REFIID iid,
                                                          void** object) = 0;
};
__CRT_UUID_DECL(
    IPrintClassObjectFactory, 0x9AF593DD, 0x9B02, 0x48A8, 0x9B, 0xAD, 0x69, 0xAC, 0xE4, 0x23, 0xF8, 0x8B)

// ShutdownOperation stands before StartOperation.
struct DECLSPEC_UUID("CDB62FC0-8BED-434E-86FB-A2CAE55F19EA") IPrintPipelineFilter : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE InitializeFilter(IInterFilterCommunicator* communicator,
                                                       IPrintPipelinePropertyBag* propertyBag,
                                                       IPrintPipelineManagerControl* pipelineControl) = 0;
    virtual HRESULT STDMETHODCALLTYPE ShutdownOperation() = 0;
    virtual HRESULT STDMETHODCALLTYPE StartOperation() = 0;
};
__CRT_UUID_DECL(
    IPrintPipelineFilter, 0xCDB62FC0, 0x8BED, 0x434E, 0x86, 0xFB, 0xA2, 0xCA, 0xE5, 0x5F, 0x19, 0xEA)
