#include "sweep/calls.h"

#include <array>
#include <cstring>
#include <sstream>
#include <unordered_map>
#include <unordered_set>

#include "base/utility/utf8.h"
#include "platform/filterpipeline.h"
#include "platform/msxml6.h"
#include "platform/printerextension.h"

namespace sweep
{
namespace
{
constexpr char kText[] = "string";

constexpr const char* kCapabilities = "the printer is asked for its capabilities";
// The same once the request has been written.
constexpr char kRequested[] = "the printer is asked for its capabilities";
// Nothing that a failure is absorbed in.
constexpr char kWritten[] = "";

// Hand-overs, by the argument that carries them.

template <std::size_t Address, typename T>
T Received(const Call& call)
{
    T* const address = call.Argument<T*>(Address);
    return address == nullptr ? T{} : *address;
}

bool HasSucceeded(const Call& call)
{
    return SUCCEEDED(static_cast<HRESULT>(call.result));
}

template <typename T, std::size_t Address>
void Out(Call& call)
{
    if (HasSucceeded(call))
    {
        Watch::Get().TakeReference(Received<Address, void*>(call), __uuidof(T));
    }
}

template <std::size_t Id, std::size_t Address>
void OutById(Call& call)
{
    if (HasSucceeded(call))
    {
        Watch::Get().TakeReference(Received<Address, void*>(call), *call.Argument<const IID*>(Id));
    }
}

/// A stream is told from others by whom it came from.
template <typename T, std::size_t Address, const char* const& Origin>
void OutStream(Call& call)
{
    if (HasSucceeded(call))
    {
        Watch::Get().TakeReference(Received<Address, void*>(call), __uuidof(T), Origin);
    }
}

template <std::size_t Address>
void OutText(Call& call)
{
    if (HasSucceeded(call) && Received<Address, BSTR>(call) != nullptr)
    {
        Watch::Get().Take(kText, Received<Address, std::uintptr_t>(call));
    }
}

template <std::size_t Address>
void OutVariant(Call& call)
{
    const VARIANT& value = *call.Argument<VARIANT*>(Address);
    if (HasSucceeded(call) && value.vt == VT_UNKNOWN)
    {
        Watch::Get().TakeReference(value.punkVal, __uuidof(IUnknown));
    }
    else if (HasSucceeded(call) && value.vt == VT_BSTR && value.bstrVal != nullptr)
    {
        Watch::Get().Take(kText, reinterpret_cast<std::uintptr_t>(value.bstrVal));
    }
}

void ClearVariant(Call& call)
{
    const VARIANT& value = *call.Argument<VARIANT*>(0);
    if (value.vt == VT_UNKNOWN)
    {
        Watch::Get().GiveReference(value.punkVal);
    }
    else if (value.vt == VT_BSTR)
    {
        Watch::Get().Give(kText, reinterpret_cast<std::uintptr_t>(value.bstrVal));
    }
}

constexpr char kMatrix[] = "matrix";
constexpr char kGdiplus[] = "start of GDI+";
constexpr char kApartment[] = "apartment";
constexpr char kLocale[] = "locale";

template <const char* Kind>
void TakeResult(Call& call)
{
    if (call.result != 0)
    {
        Watch::Get().Take(Kind, call.result);
    }
}

template <const char* Kind>
void GiveArgument(Call& call)
{
    Watch::Get().Give(Kind, call.arguments[0]);
}

template <const char* Kind>
void TakeOutOfStatus(Call& call)
{
    if (static_cast<int>(call.result) == 0)
    {
        Watch::Get().Take(Kind, Received<0, std::uintptr_t>(call));
    }
}

/// Null gives null, without asking for memory.
bool IsTextGiven(const Call& call)
{
    return call.arguments[0] != 0;
}

bool IsUtf8(const Call& call)
{
    return call.arguments[0] == CP_UTF8;
}

bool IsTokenGiven(const Call& call)
{
    return call.arguments[1] != 0;
}

/// What the runtime library asks for because not every Windows has it.
void ReplaceLateImport(Call& call);

const std::unordered_map<std::string, Function>& Imports()
{
    using enum Failing;
    constexpr auto take = &TakeResult<kMemory>;
    constexpr auto give = &GiveArgument<kMemory>;
    static const std::unordered_map<std::string, Function> imports = [] {
        const Function functions[] = {
            {"malloc",
             NoMemory,
             nullptr,
             take,
             [](const Call& call) { return Watch::Get().IsOperatorNew(call); }},
            // The runtime libraries' own, which do not look at what they get.
            {"calloc", Never, nullptr, take},
            {"_strdup", Never, nullptr, take},
            {"realloc", Never, give, take},
            {"free", Never, give},
            {"_create_locale", NoMemory, nullptr, &TakeResult<kLocale>},
            {"_free_locale", Never, &GiveArgument<kLocale>},
            {"GetProcAddress", Never, nullptr, nullptr},
            {"TlsAlloc", Never, nullptr, &TakeResult<kThreadSlot>},
            {"SysAllocString", NoMemory, nullptr, &TakeResult<kText>, &IsTextGiven},
            {"SysAllocStringLen", NoMemory, nullptr, &TakeResult<kText>},
            {"SysFreeString", Never, &GiveArgument<kText>},
            {"CoTaskMemAlloc", NoMemory},
            {"VarBstrCat", ResultOfMemory, nullptr, &OutText<2>},
            {"VarBstrCmp", Result},
            {"VariantChangeType", ResultOfMemory, nullptr, &OutVariant<0>},
            {"VariantClear", ResultAfterActing, &ClearVariant},
            {"CoFileTimeNow", Result},
            {"CoInitializeEx",
             Result,
             nullptr,
             [](Call& call) {
                 if (HasSucceeded(call))
                 {
                     Watch::Get().Take(kApartment, 1);
                 }
             }},
            {"CoUninitialize", Never, [](Call&) { Watch::Get().Give(kApartment, 1); }},
            {"CoCreateInstance", Result, nullptr, &OutById<3, 4>},
            {"CreateStreamOnHGlobal", ResultOfMemory, nullptr, &Out<IStream, 2>},
            {"GdiplusStartup", Status, nullptr, &TakeOutOfStatus<kGdiplus>},
            {"GdiplusShutdown", Never, &GiveArgument<kGdiplus>},
            {"GdipCreateMatrix", Status, nullptr, &TakeOutOfStatus<kMatrix>},
            {"GdipDeleteMatrix", Never, &GiveArgument<kMatrix>},
            {"GdipGetMatrixElements", Status},
            {"GdipSetMatrixElements", Status},
            {"GdipRotateMatrix", Status},
            {"GdipScaleMatrix", Status},
            {"GdipTransformMatrixPoints", Status},
            {"PTOpenProvider", Result},
            {"PTCloseProvider", ResultAfterActing},
            {"PTGetPrintCapabilities", Result, nullptr, &OutText<3>},
            {"PTMergeAndValidatePrintTicket", Result, nullptr, &OutText<5>},
            // Going back to the thread's own token is not failed: nothing could be done about it.
            {"SetThreadToken", Error, nullptr, nullptr, &IsTokenGiven},
            {"GetLocaleInfoW", Error},
            // In other code pages the runtime library asks, for its locale.
            {"MultiByteToWideChar", Error, nullptr, nullptr, &IsUtf8},
            {"WideCharToMultiByte", Error, nullptr, nullptr, &IsUtf8},
            // For the text of an exception, of which there is none before the one failure.
            {"FormatMessageA", Error},
            // Nobody asks for the driver's information block.
            {"GetPrinterDriverW", Error},
        };
        std::unordered_map<std::string, Function> byName;
        for (const Function& function : functions)
        {
            byName[function.name] = function;
        }
        byName["GetProcAddress"].after = &ReplaceLateImport;
        const std::pair<const char*, const char*> ordinals[] = {{"2", "PTOpenProvider"},
                                                                {"4", "PTCloseProvider"},
                                                                {"6", "PTGetPrintCapabilities"},
                                                                {"7", "PTMergeAndValidatePrintTicket"}};
        for (const auto& [ordinal, name] : ordinals)
        {
            byName[std::string("prntvpt.dll ") + ordinal] = byName[name];
        }
        // Not failed.
        std::istringstream harmless(
            // End the process.
            "abort exit _amsg_exit _wassert "
            // Unwind the stack.
            "RaiseException RtlCaptureContext RtlLookupFunctionEntry RtlUnwindEx RtlVirtualUnwind "
            "_setmp _setjmp longjmp __C_specific_handler AddVectoredExceptionHandler "
            "RemoveVectoredExceptionHandler "
            // Have no way to fail.
            "VariantInit SysStringLen GetLastError SetLastError GetCurrentProcess GetCurrentProcessId "
            "GetCurrentThread GetCurrentThreadId GetSystemTimeAsFileTime GetTickCount64 LocalFree "
            "AcquireSRWLockExclusive ReleaseSRWLockExclusive "
            "EnterCriticalSection LeaveCriticalSection TryEnterCriticalSection InitializeCriticalSection "
            "DeleteCriticalSection TlsGetValue _lock _unlock _errno __iob_func ___lc_codepage_func "
            "___mb_cur_max_func localeconv IsDBCSLeadByteEx IsDebuggerPresent OutputDebugStringA "
            "memchr memcmp memcpy memmove memset strcmp strncmp strlen strcoll strxfrm strerror strftime "
            "wcslen wcscoll wcsxfrm wcsftime wcstol iswctype towlower towupper _ultoa "
            "_vscprintf_l _vscwprintf_l _vsnprintf_l _vsnwprintf_l "
            // Belong to the runtime libraries: the start of a module, locales, terminal output, threads.
            "DisableThreadLibraryCalls _initterm _onexit __dllonexit setlocale signal printf fprintf "
            "vfprintf "
            "fputc fputs fwrite _read _close GetModuleHandleW LoadLibraryW VirtualProtect VirtualQuery Sleep "
            "CloseHandle CreateEventA CreateSemaphoreA DuplicateHandle GetHandleInformation OpenProcess "
            "GetProcessAffinityMask SetProcessAffinityMask GetThreadContext SetThreadContext "
            "GetThreadPriority SetThreadPriority ReleaseSemaphore ResetEvent SetEvent ResumeThread "
            "SuspendThread TlsSetValue WaitForMultipleObjects WaitForSingleObject _beginthreadex "
            "_endthreadex");
        for (std::string name; harmless >> name;)
        {
            byName.try_emplace(name, Function{"harmless"});
        }
        return byName;
    }();
    return imports;
}

void ReplaceLateImport(Call& call)
{
    const std::string name = call.Argument<const char*>(1);
    if (call.result != 0 && (name == "_create_locale" || name == "_free_locale"))
    {
        void* const original = reinterpret_cast<void*>(call.result); // NOLINT(performance-no-int-to-ptr)
        call.result =
            reinterpret_cast<std::uintptr_t>(Watch::Get().Import(name, original, *FindImport(name)));
    }
}

/// A method's place in its interface: of a virtual one, the pointer holds the offset plus one.
template <typename Method>
std::size_t SlotOf(Method method)
{
    std::array<std::uintptr_t, 2> parts{};
    static_assert(sizeof(method) == sizeof(parts));
    std::memcpy(parts.data(), &method, sizeof(parts));
    return (parts[0] - 1) / sizeof(void*);
}

template <std::size_t Index>
std::string TextArgument(const Call& call)
{
    return base::utility::ToUtf8(call.Argument<const wchar_t*>(Index));
}

/// What a query of a whole document is for.
const char* StageOf(const Call& call)
{
    const std::wstring_view query = call.Argument<const wchar_t*>(1);
    const auto names = [&](const wchar_t* text) { return query.find(text) != std::wstring_view::npos; };
    if (!query.starts_with(L"//"))
    {
        return Watch::Get().GetStage();
    }
    if (names(L"PrintCapabilities") || names(L"PageImageableSize"))
    {
        return kRequested;
    }
    if (names(L"Property[@name = \"psk:MediaSize"))
    {
        return "a media size is read";
    }
    if (names(L":MinWidth") || names(L":MinHeight") || names(L":MaxWidth") || names(L":MaxHeight"))
    {
        return "a printable limit is read";
    }
    if (names(L"FeedDirection"))
    {
        return "the feed direction is read";
    }
    return query.find(L'/', 2) == std::wstring_view::npos && names(L"Feature[")
               ? "a feature is removed from a ticket"
               : "";
}

/// Which interface is asked for.
std::string InterfaceArgument(const Call& call)
{
    const Interface* const asked = FindInterface(*call.Argument<const IID*>(1));
    return asked == nullptr ? "unknown" : asked->name;
}

Function Detailed(Function function, std::string (*detail)(const Call&))
{
    function.detail = detail;
    return function;
}

/// Of a document that is prepared for queries: the printer's capabilities, or another ticket.
const char* StageOfDocument(const Call&)
{
    return Watch::Get().GetStage() == kRequested ? kRequested : "";
}

const char* StageOfWriting(const Call&)
{
    return kWritten;
}

/// What the answers of the printer are remembered by: a page's ticket, then the one that is written for it,
/// with which the printer is asked.
const char* StageOfText(const Call&)
{
    return Watch::Get().GetStage() == kWritten ? kWritten : "";
}

/// A ticket is saved for the printer, or for something else.
const char* StageOfSave(const Call&)
{
    return Watch::Get().GetStage() == kCapabilities ? kRequested : "";
}

const char* NoStage(const Call&)
{
    return "";
}

Function Staged(Function function, const char* (*stage)(const Call&))
{
    function.stage = stage;
    return function;
}

Function Failable(Function function, Failing failing)
{
    function.failing = failing;
    return function;
}

template <typename Method>
Function Callable(const char* name, Method method, void (*after)(Call&) = nullptr)
{
    Function function{name, Failing::Result};
    function.after = after;
    function.slot = SlotOf(method);
    return function;
}

#define CALLABLE(interface, method, ...) Callable(#method, &interface::method __VA_OPT__(, ) __VA_ARGS__)

constexpr const char* kUserTicket = "a ticket of the user";
constexpr const char* kTicket = "a ticket";
constexpr const char* kPage = "a page";

template <typename T, typename LastMethod>
Interface Describe(const char* name, const Interface* base, LastMethod last, std::vector<Function> methods)
{
    return {__uuidof(T), name, base, SlotOf(last) + 1, std::move(methods)};
}

/// Sequence and document.
template <typename T>
Interface DescribeTicketed(const char* name, const Interface* base)
{
    return Describe<T>(
        name, base, &T::SetPrintTicket, {CALLABLE(T, GetPrintTicket, &Out<IPartPrintTicket, 1>)});
}

const std::vector<const Interface*>& Interfaces()
{
    static Function release{
        "Release", Failing::Never, [](Call& call) { Watch::Get().GiveReference(call.Argument<void*>(0)); }};
    release.slot = 2;
    static Function addRef{
        "AddRef", Failing::Never, [](Call& call) { Watch::Get().Take(kReference, call.arguments[0]); }};
    addRef.slot = 1;
    static Function query{"QueryInterface", Failing::Result, nullptr, &OutById<1, 2>};
    static const Interface unknown = Describe<IUnknown>(
        "IUnknown", nullptr, &IUnknown::Release, {Detailed(query, &InterfaceArgument), addRef, release});
    const Interface* const root = &unknown;

    static const Interface node = Describe<IXMLDOMNode>(
        "IXMLDOMNode",
        root,
        &IXMLDOMNode::transformNodeToObject,
        {CALLABLE(IXMLDOMNode, get_nodeName, &OutText<1>),
         CALLABLE(IXMLDOMNode, get_nodeValue, &OutVariant<1>),
         CALLABLE(IXMLDOMNode, get_nodeType),
         CALLABLE(IXMLDOMNode, get_parentNode, &Out<IXMLDOMNode, 1>),
         CALLABLE(IXMLDOMNode, get_firstChild, &Out<IXMLDOMNode, 1>),
         CALLABLE(IXMLDOMNode, get_nextSibling, &Out<IXMLDOMNode, 1>),
         CALLABLE(IXMLDOMNode, get_attributes, &Out<IXMLDOMNamedNodeMap, 1>),
         CALLABLE(IXMLDOMNode, removeChild, &Out<IXMLDOMNode, 2>),
         CALLABLE(IXMLDOMNode, appendChild, &Out<IXMLDOMNode, 2>),
         Staged(CALLABLE(IXMLDOMNode, cloneNode, &Out<IXMLDOMNode, 2>), &NoStage),
         CALLABLE(IXMLDOMNode, get_text, &OutText<1>),
         CALLABLE(IXMLDOMNode, put_text),
         CALLABLE(IXMLDOMNode, get_nodeTypedValue, &OutVariant<1>),
         Staged(CALLABLE(IXMLDOMNode,
                         get_xml,
                         [](Call& call) {
                             OutText<1>(call);
                             Watch::Get().SetStage(Watch::Get().GetStage() == kWritten ? kCapabilities : "");
                         }),
                &StageOfText),
         CALLABLE(IXMLDOMNode, selectNodes, &Out<IXMLDOMNodeList, 2>),
         Staged(CALLABLE(IXMLDOMNode, selectSingleNode, &Out<IXMLDOMNode, 2>), &StageOf),
         CALLABLE(IXMLDOMNode, get_namespaceURI, &OutText<1>),
         CALLABLE(IXMLDOMNode, get_baseName, &OutText<1>)});
    static const Interface attribute = Describe<IXMLDOMAttribute>(
        "IXMLDOMAttribute", &node, &IXMLDOMAttribute::put_value, {CALLABLE(IXMLDOMAttribute, put_value)});
    static const Interface element =
        Describe<IXMLDOMElement>("IXMLDOMElement",
                                 &node,
                                 &IXMLDOMElement::normalize,
                                 {CALLABLE(IXMLDOMElement, setAttribute),
                                  CALLABLE(IXMLDOMElement, setAttributeNode, &Out<IXMLDOMAttribute, 2>)});
    static const Interface document = Describe<IXMLDOMDocument2>(
        "IXMLDOMDocument2",
        &node,
        &IXMLDOMDocument2::getProperty,
        {CALLABLE(IXMLDOMDocument2, get_documentElement, &Out<IXMLDOMElement, 1>),
         Staged(CALLABLE(IXMLDOMDocument2, createNode, &Out<IXMLDOMNode, 4>), &StageOfWriting),
         CALLABLE(IXMLDOMDocument2, get_doctype),
         CALLABLE(IXMLDOMDocument2, load),
         CALLABLE(IXMLDOMDocument2, loadXML),
         Staged(CALLABLE(IXMLDOMDocument2, save), &StageOfSave),
         CALLABLE(IXMLDOMDocument2, put_async),
         CALLABLE(IXMLDOMDocument2, put_validateOnParse),
         CALLABLE(IXMLDOMDocument2, put_resolveExternals),
         Staged(Detailed(CALLABLE(IXMLDOMDocument2, setProperty), &TextArgument<1>), &StageOfDocument)});
    static const Interface list = Describe<IXMLDOMNodeList>(
        "IXMLDOMNodeList",
        root,
        &IXMLDOMNodeList::get__newEnum,
        {CALLABLE(IXMLDOMNodeList, get_item, &Out<IXMLDOMNode, 2>), CALLABLE(IXMLDOMNodeList, get_length)});
    static const Interface map =
        Describe<IXMLDOMNamedNodeMap>("IXMLDOMNamedNodeMap",
                                      root,
                                      &IXMLDOMNamedNodeMap::get__newEnum,
                                      {CALLABLE(IXMLDOMNamedNodeMap, getNamedItem, &Out<IXMLDOMNode, 2>),
                                       CALLABLE(IXMLDOMNamedNodeMap, get_item, &Out<IXMLDOMNode, 2>)});

    static const Interface saxReader = Describe<ISAXXMLReader>(
        "ISAXXMLReader",
        root,
        &ISAXXMLReader::parseURL,
        {Detailed(CALLABLE(ISAXXMLReader, putFeature), &TextArgument<1>),
         [] {
             auto method = CALLABLE(ISAXXMLReader, putContentHandler);
             method.before = [](Call& call) {
                 Watch::Get().Adopt(call.Argument<void*>(1), __uuidof(ISAXContentHandler));
             };
             return method;
         }(),
         CALLABLE(ISAXXMLReader, parse)});
    static const Interface saxAttributes = Describe<ISAXAttributes>("ISAXAttributes",
                                                                    root,
                                                                    &ISAXAttributes::getValueFromQName,
                                                                    {CALLABLE(ISAXAttributes, getLength),
                                                                     CALLABLE(ISAXAttributes, getName),
                                                                     CALLABLE(ISAXAttributes, getValue)});
    // The module's own: looked at for what it is handed.
    static const Interface saxHandler = [] {
        Function start{"startElement"};
        start.before = [](Call& call) {
            Watch::Get().Adopt(call.Argument<void*>(7), __uuidof(ISAXAttributes));
        };
        start.slot = SlotOf(&ISAXContentHandler::startElement);
        start.isCallback = true;
        return Interface{__uuidof(ISAXContentHandler), "ISAXContentHandler", nullptr, 0, {start}};
    }();
    static const Interface stream =
        Describe<IStream>("IStream", root, &IStream::Clone, {CALLABLE(IStream, Seek)});

    static const Interface communicator = Describe<IInterFilterCommunicator>(
        "IInterFilterCommunicator",
        root,
        &IInterFilterCommunicator::RequestWriter,
        {CALLABLE(IInterFilterCommunicator, RequestReader, &Out<IXpsDocumentProvider, 1>),
         CALLABLE(IInterFilterCommunicator, RequestWriter, &Out<IXpsDocumentConsumer, 1>)});
    static const Interface bag = Describe<IPrintPipelinePropertyBag>(
        "IPrintPipelinePropertyBag",
        root,
        &IPrintPipelinePropertyBag::DeleteProperty,
        {Detailed(CALLABLE(IPrintPipelinePropertyBag, GetProperty, &OutVariant<2>), &TextArgument<1>)});
    static const Interface driverBag = Describe<IPrinterPropertyBag>(
        "IPrinterPropertyBag",
        root,
        &IPrinterPropertyBag::GetWriteStream,
        {CALLABLE(IPrinterPropertyBag, GetString, &OutText<2>), CALLABLE(IPrinterPropertyBag, GetInt32)});
    static const Interface control =
        Describe<IPrintPipelineManagerControl>("IPrintPipelineManagerControl",
                                               root,
                                               &IPrintPipelineManagerControl::FilterFinished,
                                               {CALLABLE(IPrintPipelineManagerControl, RequestShutdown),
                                                CALLABLE(IPrintPipelineManagerControl, FilterFinished)});
    static const Interface provider =
        Describe<IXpsDocumentProvider>("IXpsDocumentProvider",
                                       root,
                                       &IXpsDocumentProvider::GetXpsPart,
                                       {Staged(CALLABLE(IXpsDocumentProvider,
                                                        GetXpsPart,
                                                        [](Call& call) {
                                                            Out<IUnknown, 1>(call);
                                                            if (Received<1, void*>(call) == nullptr)
                                                            {
                                                                Watch::Get().SetStage("the operation ends");
                                                            }
                                                        }),
                                               &NoStage)});
    static const Interface consumer = Describe<IXpsDocumentConsumer>(
        "IXpsDocumentConsumer",
        root,
        &IXpsDocumentConsumer::GetNewEmptyPart,
        {Staged(CALLABLE(IXpsDocumentConsumer, SendXpsUnknown), &NoStage),
         Staged(CALLABLE(IXpsDocumentConsumer, SendXpsDocument), &NoStage),
         Staged(CALLABLE(IXpsDocumentConsumer, SendFixedDocumentSequence), &NoStage),
         Staged(CALLABLE(IXpsDocumentConsumer, SendFixedDocument), &NoStage),
         Staged(CALLABLE(IXpsDocumentConsumer, SendFixedPage), &NoStage),
         Failable(CALLABLE(IXpsDocumentConsumer, CloseSender), Failing::ResultAfterActing),
         CALLABLE(IXpsDocumentConsumer, GetNewEmptyPart, [](Call& call) {
             OutById<2, 3>(call);
             OutStream<IPrintWriteStream, 4, kTicket>(call);
         })});
    static const Interface xpsDocument =
        Describe<IXpsDocument>("IXpsDocument", root, &IXpsDocument::SetThumbnail, {});
    static const Interface sequence =
        DescribeTicketed<IFixedDocumentSequence>("IFixedDocumentSequence", root);
    static const Interface fixedDocument = DescribeTicketed<IFixedDocument>("IFixedDocument", root);
    static const Interface page = Describe<IFixedPage>(
        "IFixedPage",
        root,
        &IFixedPage::GetXpsPartIterator,
        {CALLABLE(IFixedPage, GetStream, &OutStream<IPrintReadStream, 1, kPage>),
         Staged(CALLABLE(IFixedPage, GetPrintTicket, &Out<IPartPrintTicket, 1>), &NoStage),
         CALLABLE(IFixedPage, GetWriteStream, &OutStream<IPrintWriteStream, 1, kPage>),
         CALLABLE(IFixedPage, SetPrintTicket),
         CALLABLE(IFixedPage, DeleteResource)});
    static const Interface ticket = Describe<IPartPrintTicket>(
        "IPartPrintTicket",
        root,
        &IPartPrintTicket::SetPartCompression,
        {CALLABLE(IPartPrintTicket, GetUri, &OutText<1>),
         CALLABLE(IPartPrintTicket, GetStream, &OutStream<IPrintReadStream, 1, kTicket>)});
    static const Interface factory = Describe<IPrintReadStreamFactory>(
        "IPrintReadStreamFactory",
        root,
        &IPrintReadStreamFactory::GetStream,
        {CALLABLE(IPrintReadStreamFactory, GetStream, &OutStream<IPrintReadStream, 1, kUserTicket>)});
    static const Interface readStream =
        Describe<IPrintReadStream>("IPrintReadStream",
                                   root,
                                   &IPrintReadStream::ReadBytes,
                                   {CALLABLE(IPrintReadStream, Seek), CALLABLE(IPrintReadStream, ReadBytes)});
    static const Interface writeStream =
        Describe<IPrintWriteStream>("IPrintWriteStream",
                                    root,
                                    &IPrintWriteStream::Close,
                                    {CALLABLE(IPrintWriteStream, WriteBytes),
                                     Failable(CALLABLE(IPrintWriteStream, Close), Failing::Never)});
    static const std::vector<const Interface*> all = {
        &unknown,   &node,          &attribute,  &element,     &document,     &list,          &map,
        &saxReader, &saxAttributes, &saxHandler, &stream,      &communicator, &bag,           &driverBag,
        &control,   &provider,      &consumer,   &xpsDocument, &sequence,     &fixedDocument, &page,
        &ticket,    &factory,       &readStream, &writeStream};
    return all;
}
} // namespace

const Function* FindImport(const std::string& name)
{
    const auto found = Imports().find(name);
    return found == Imports().end() ? nullptr : &found->second;
}

const Interface* FindInterface(const IID& iid)
{
    for (const Interface* candidate : Interfaces())
    {
        if (candidate->iid == iid)
        {
            return candidate;
        }
    }
    return nullptr;
}
} // namespace sweep
