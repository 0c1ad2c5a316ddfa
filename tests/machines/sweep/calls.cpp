#include "machines/sweep/calls.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <map>
#include <sstream>
#include <string_view>

#include "base/utility/utf8.h"

namespace sweep
{
namespace
{
constexpr char kText[] = "string";

// Stages are compared by address. In the first two every failure comes out with its own code; in the last the
// request has been written.
constexpr char kNothing[] = "";
constexpr char kWritten[] = "";
constexpr char kCapabilities[] = "the printer is asked for its capabilities";
constexpr char kRequested[] = "the printer is asked for its capabilities";

bool HasSucceeded(const Call& call)
{
    return SUCCEEDED(static_cast<HRESULT>(call.result));
}

/// The value at the address in an argument; 0 for null.
std::uintptr_t Received(const Call& call, std::size_t argument)
{
    const auto* const address = call.Argument<const std::uintptr_t*>(argument);
    return address == nullptr ? 0 : *address;
}

void* ReceivedObject(const Call& call, std::size_t argument)
{
    return reinterpret_cast<void*>(Received(call, argument)); // NOLINT(performance-no-int-to-ptr)
}

void TakeIfAny(const std::string& kind, std::uintptr_t what)
{
    if (what != 0)
    {
        Watch::Get().Take(kind, what);
    }
}

void TakeResult(Call& call, const HandOver& what)
{
    TakeIfAny(what.kind, call.result);
}

void TakeMade(Call& call, const HandOver& what)
{
    TakeIfAny(what.kind, static_cast<int>(call.result) == 0 ? Received(call, 0) : 0);
}

void GiveArgument(Call& call, const HandOver& what)
{
    Watch::Get().Give(what.kind, call.arguments[0]);
}

void Enter(Call& call, const HandOver& what)
{
    TakeIfAny(what.kind, HasSucceeded(call) ? 1 : 0);
}

void Leave(Call&, const HandOver& what)
{
    Watch::Get().Give(what.kind, 1);
}

void TakeText(Call& call, const HandOver& what)
{
    TakeIfAny(kText, HasSucceeded(call) ? Received(call, what.argument) : 0);
}

void TakeVariant(Call& call, const HandOver& what)
{
    const VARIANT& value = *call.Argument<VARIANT*>(what.argument);
    if (HasSucceeded(call) && value.vt == VT_UNKNOWN)
    {
        Watch::Get().TakeReference(value.punkVal, FindInterface(__uuidof(IUnknown)));
    }
    else if (HasSucceeded(call) && value.vt == VT_BSTR)
    {
        TakeIfAny(kText, reinterpret_cast<std::uintptr_t>(value.bstrVal));
    }
}

void ClearVariant(Call& call, const HandOver& what)
{
    const VARIANT& value = *call.Argument<VARIANT*>(what.argument);
    if (value.vt == VT_UNKNOWN)
    {
        Watch::Get().GiveReference(value.punkVal);
    }
    else if (value.vt == VT_BSTR)
    {
        Watch::Get().Give(kText, reinterpret_cast<std::uintptr_t>(value.bstrVal));
    }
}

void TakeObject(Call& call, const HandOver& what)
{
    if (HasSucceeded(call))
    {
        Watch::Get().TakeReference(ReceivedObject(call, what.argument), what.type, what.kind);
    }
}

void TakeAsked(Call& call, const HandOver& what)
{
    if (HasSucceeded(call))
    {
        const Interface* const asked = FindInterface(*call.Argument<const IID*>(what.argument - 1));
        Watch::Get().TakeReference(ReceivedObject(call, what.argument), asked);
    }
}

void AddReference(Call& call, const HandOver&)
{
    Watch::Get().Take(kReference, call.arguments[0]);
}

void Release(Call& call, const HandOver&)
{
    Watch::Get().GiveReference(call.Argument<void*>(0));
}

void Adopt(Call& call, const HandOver& what)
{
    Watch::Get().Adopt(call.Argument<void*>(what.argument), what.type);
}

void ReplaceLateImport(Call& call, const HandOver&)
{
    const std::string name = call.Argument<const char*>(1);
    if (call.result != 0 && (name == "_create_locale" || name == "_free_locale"))
    {
        void* const original = reinterpret_cast<void*>(call.result); // NOLINT(performance-no-int-to-ptr)
        void* const entry = Watch::Get().Import(name, original, *FindImport(name));
        call.result = reinterpret_cast<std::uintptr_t>(entry);
    }
}

void AskPrinter(Call&, const HandOver&)
{
    Watch::Get().SetStage(Watch::Get().GetStage() == kWritten ? kCapabilities : kNothing);
}

void EndOperation(Call& call, const HandOver& what)
{
    if (Received(call, what.argument) == 0)
    {
        Watch::Get().SetStage("the operation ends");
    }
}

/// The stage that a query of a whole document begins.
const char* StageOfQuery(const Call& call)
{
    const std::wstring_view query = call.Argument<const wchar_t*>(1);
    // A query for parameters is part of another stage.
    if (!query.starts_with(L"//") || query.find(L":Parameter") != query.npos)
    {
        return Watch::Get().GetStage();
    }
    const bool isOfFeature = query.find(L'/', 2) == query.npos;
    constexpr std::pair<const wchar_t*, const char*> stages[] = {
        {L"PrintCapabilities", kRequested},
        {L"PageImageableSize", kRequested},
        {L"Option | ", "an option is looked for"},
        {L"Property[@name = \"psk:MediaSize", "a media size is read"},
        {L":MinWidth", "a printable limit is read"},
        {L":MinHeight", "a printable limit is read"},
        {L":MaxWidth", "a printable limit is read"},
        {L":MaxHeight", "a printable limit is read"},
        {L"FeedDirection", "the feed direction is read"}};
    for (const auto& [part, stage] : stages)
    {
        if (query.find(part) != query.npos)
        {
            return stage;
        }
    }
    return isOfFeature && query.find(L"Feature[") != query.npos ? "a feature is removed from a ticket"
                                                                : kNothing;
}

/// The next stage if the job is in `stage`; else null.
template <const char* Stage, const char* Next>
const char* After(const Call&)
{
    return Watch::Get().GetStage() == Stage ? Next : kNothing;
}

std::string TextArgument(const Call& call)
{
    return base::utility::ToUtf8(call.Argument<const wchar_t*>(1));
}

std::string InterfaceArgument(const Call& call)
{
    const Interface* const asked = FindInterface(*call.Argument<const IID*>(1));
    return asked == nullptr ? "unknown" : asked->name;
}

// The words of the table.
const std::map<std::string_view, Failing> kFailings = {{"never", Failing::Never},
                                                       {"result", Failing::Result},
                                                       {"acting", Failing::ResultAfterActing},
                                                       {"no-memory", Failing::NoMemory},
                                                       {"memory", Failing::ResultOfMemory},
                                                       {"error", Failing::Error},
                                                       {"status", Failing::Status}};

using Act = void (*)(Call&, const HandOver&);

const std::map<std::string_view, Act> kActsBefore = {{"gives", &GiveArgument},
                                                     {"leaves", &Leave},
                                                     {"clears", &ClearVariant},
                                                     {"adds-reference", &AddReference},
                                                     {"releases", &Release},
                                                     {"adopts", &Adopt}};

const std::map<std::string_view, Act> kActsAfter = {{"takes", &TakeResult},
                                                    {"makes", &TakeMade},
                                                    {"enters", &Enter},
                                                    {"text", &TakeText},
                                                    {"variant", &TakeVariant},
                                                    {"asked", &TakeAsked},
                                                    {"late-import", &ReplaceLateImport},
                                                    {"asks-printer", &AskPrinter},
                                                    {"ends-operation", &EndOperation}};

const std::map<std::string_view, bool (*)(const Call&)> kConditions = {
    {"operator-new", [](const Call& call) { return Watch::Get().IsOperatorNew(call); }},
    // Null gives null without an allocation.
    {"text-given", [](const Call& call) { return call.arguments[0] != 0; }},
    {"token-given", [](const Call& call) { return call.arguments[1] != 0; }},
    {"utf8", [](const Call& call) { return call.arguments[0] == CP_UTF8; }}};

const std::map<std::string_view, std::string (*)(const Call&)> kDetails = {
    {"by-name", &TextArgument}, {"by-interface", &InterfaceArgument}};

const std::map<std::string_view, const char* (*)(const Call&)> kStages = {
    {"begins-nothing", [](const Call&) -> const char* { return kNothing; }},
    {"writes-ticket", [](const Call&) -> const char* { return kWritten; }},
    {"queries", &StageOfQuery},
    // The texts that are keys of cached imageable areas: a page's ticket, then the ticket made from it.
    {"remembers-text", &After<kWritten, kWritten>},
    {"saves-ticket", &After<kCapabilities, kRequested>},
    {"prepares-queries", &After<kRequested, kRequested>}};

struct Table
{
    std::map<std::string, Function> imports;
    std::map<std::string, Interface> interfaces;
};

/// Applies the meaning of a word; false if the word is not among these.
template <typename Meaning>
bool Understand(const std::map<std::string_view, Meaning>& words, const std::string& word, Meaning& meaning)
{
    const auto found = words.find(word);
    if (found != words.end())
    {
        meaning = found->second;
    }
    return found != words.end();
}

/// The text after the first colon of a word such as "takes:memory", "text:1" or "IPrintReadStream:1:a-page".
HandOver ReadHandOver(std::istringstream& pieces)
{
    HandOver handOver;
    for (std::string piece; std::getline(pieces, piece, ':');)
    {
        if (std::isdigit(static_cast<unsigned char>(piece.front())) != 0)
        {
            handOver.argument = std::stoul(piece);
        }
        else
        {
            std::replace(piece.begin(), piece.end(), '-', ' ');
            handOver.kind = piece;
        }
    }
    return handOver;
}

/// Reads a line without the slot of a method.
Function ReadFunction(std::istream& line, Table& table)
{
    Function function;
    std::string word;
    line >> function.name >> word;
    if (!Understand(kFailings, word, function.failing))
    {
        Watch::Get().Complain(function.name + " fails by something unknown: " + word);
    }
    while (line >> word)
    {
        std::istringstream pieces(word);
        std::getline(pieces, word, ':');
        HandOver handOver = ReadHandOver(pieces);
        if (word == "callback")
        {
            function.isCallback = true;
        }
        else if (Understand(kActsBefore, word, handOver.act))
        {
            handOver.type = word == "adopts" ? &table.interfaces[handOver.kind] : nullptr;
            function.before.push_back(handOver);
        }
        else if (Understand(kActsAfter, word, handOver.act))
        {
            function.after.push_back(handOver);
        }
        else if (!Understand(kConditions, word, function.mayFail) &&
                 !Understand(kDetails, word, function.detail) && !Understand(kStages, word, function.stage))
        {
            handOver.act = &TakeObject;
            handOver.type = &table.interfaces[word];
            function.after.push_back(handOver);
        }
    }
    return function;
}

void ReadInterface(Interface& type, std::istream& line, Table& table)
{
    std::string base;
    std::string iid;
    line >> base >> type.slotCount >> iid;
    type.base = base == "-" ? nullptr : &table.interfaces[base];
    IIDFromString(base::utility::FromUtf8(iid).c_str(), &type.iid);
}

Table ReadTable()
{
    Table table;
    Interface* last = nullptr;
    std::ifstream file(CALLS_TABLE);
    for (std::string text; std::getline(file, text);)
    {
        std::istringstream line(text);
        std::string name;
        if (text.starts_with("interface ") && line >> name >> name)
        {
            last = &table.interfaces[name];
            last->name = name;
            ReadInterface(*last, line, table);
        }
        else if (std::size_t slot = 0; text.starts_with(' ') && line >> slot)
        {
            last->methods.push_back(ReadFunction(line, table));
            last->methods.back().slot = slot;
        }
        else if (text.starts_with("harmless "))
        {
            for (line >> name; line >> name;)
            {
                table.imports[name].name = name;
            }
        }
        else if (text.starts_with("ordinal ") && line >> name >> name)
        {
            table.imports[name] = ReadFunction(line, table);
        }
        else if (!text.empty() && !text.starts_with('#'))
        {
            const Function function = ReadFunction(line, table);
            table.imports[function.name] = function;
        }
    }
    for (const auto& [name, each] : table.interfaces)
    {
        if (each.name.empty())
        {
            Watch::Get().Complain("the table of calls says nothing of " + name);
        }
    }
    return table;
}

const Table& Calls()
{
    static const Table table = ReadTable();
    return table;
}
} // namespace

const Function* FindImport(const std::string& name)
{
    const auto found = Calls().imports.find(name);
    return found == Calls().imports.end() ? nullptr : &found->second;
}

const Interface* FindInterface(const IID& iid)
{
    for (const auto& [name, candidate] : Calls().interfaces)
    {
        if (candidate.iid == iid)
        {
            return &candidate;
        }
    }
    return nullptr;
}
} // namespace sweep
