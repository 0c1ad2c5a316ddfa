#include "machines/sweep/calls.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string_view>
#include <type_traits>

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

struct Table
{
    std::map<std::string, Function> imports;
    std::map<std::string, Interface> interfaces;
};

using Act = void (*)(Call&, const HandOver&);
using Meaning = std::function<void(Function&, HandOver)>;

template <typename Value>
Meaning Set(Value Function::*member, std::type_identity_t<Value> value)
{
    return [=](Function& function, const HandOver&) { function.*member = value; };
}

Meaning Add(std::vector<HandOver> Function::*list, Act act)
{
    return [=](Function& function, HandOver what) {
        what.act = act;
        (function.*list).push_back(std::move(what));
    };
}

// The words of the table. Any other names an interface.
const std::map<std::string_view, Meaning> kWords = {
    {"never", Set(&Function::failing, Failing::Never)},
    {"result", Set(&Function::failing, Failing::Result)},
    {"acting", Set(&Function::failing, Failing::ResultAfterActing)},
    {"no-memory", Set(&Function::failing, Failing::NoMemory)},
    {"memory", Set(&Function::failing, Failing::ResultOfMemory)},
    {"error", Set(&Function::failing, Failing::Error)},
    {"status", Set(&Function::failing, Failing::Status)},
    {"gives", Add(&Function::before, &GiveArgument)},
    {"leaves", Add(&Function::before, &Leave)},
    {"clears", Add(&Function::before, &ClearVariant)},
    {"adds-reference", Add(&Function::before, &AddReference)},
    {"releases", Add(&Function::before, &Release)},
    {"adopts", Add(&Function::before, &Adopt)},
    {"takes", Add(&Function::after, &TakeResult)},
    {"makes", Add(&Function::after, &TakeMade)},
    {"enters", Add(&Function::after, &Enter)},
    {"text", Add(&Function::after, &TakeText)},
    {"variant", Add(&Function::after, &TakeVariant)},
    {"asked", Add(&Function::after, &TakeAsked)},
    {"late-import", Add(&Function::after, &ReplaceLateImport)},
    {"asks-printer", Add(&Function::after, &AskPrinter)},
    {"ends-operation", Add(&Function::after, &EndOperation)},
    {"operator-new",
     Set(&Function::mayFail, [](const Call& call) { return Watch::Get().IsOperatorNew(call); })},
    // Null gives null without an allocation.
    {"text-given", Set(&Function::mayFail, [](const Call& call) { return call.arguments[0] != 0; })},
    {"token-given", Set(&Function::mayFail, [](const Call& call) { return call.arguments[1] != 0; })},
    {"utf8", Set(&Function::mayFail, [](const Call& call) { return call.arguments[0] == CP_UTF8; })},
    {"by-name", Set(&Function::detail, &TextArgument)},
    {"by-interface", Set(&Function::detail, &InterfaceArgument)},
    {"begins-nothing", Set(&Function::stage, [](const Call&) -> const char* { return kNothing; })},
    {"writes-ticket", Set(&Function::stage, [](const Call&) -> const char* { return kWritten; })},
    {"queries", Set(&Function::stage, &StageOfQuery)},
    // The texts that are keys of cached imageable areas: a page's ticket, then the ticket made from it.
    {"remembers-text", Set(&Function::stage, &After<kWritten, kWritten>)},
    {"saves-ticket", Set(&Function::stage, &After<kCapabilities, kRequested>)},
    {"prepares-queries", Set(&Function::stage, &After<kRequested, kRequested>)},
    {"callback", Set(&Function::isCallback, true)}};

/// Reads a line without the slot of a method. A word may have an argument's index and a kind behind it, such
/// as "takes:memory", "text:1" or "IPrintReadStream:1:a-page".
Function ReadFunction(std::istream& line, Table& table)
{
    Function function;
    line >> function.name;
    for (std::string text; line >> text;)
    {
        std::istringstream pieces(text);
        std::string word;
        std::getline(pieces, word, ':');
        HandOver what;
        for (std::string piece; std::getline(pieces, piece, ':');)
        {
            if (std::isdigit(static_cast<unsigned char>(piece.front())) != 0)
            {
                what.argument = std::stoul(piece);
            }
            else
            {
                std::replace(piece.begin(), piece.end(), '-', ' ');
                what.kind = piece;
            }
        }
        const auto known = kWords.find(word);
        what.type = known == kWords.end() ? &table.interfaces[word]
                    : word == "adopts"    ? &table.interfaces[what.kind]
                                          : nullptr;
        (known == kWords.end() ? Add(&Function::after, &TakeObject) : known->second)(function, what);
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
