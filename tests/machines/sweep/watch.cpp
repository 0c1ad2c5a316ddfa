#include "machines/sweep/watch.h"

#include <array>
#include <cstdlib>
#include <span>

#include "machines/sweep/calls.h"

namespace sweep
{
namespace
{
/// What a failing call returns.
std::uintptr_t AnswerOf(Failing failing)
{
    constexpr std::uintptr_t kGenericError = 1;
    switch (failing)
    {
    case Failing::Result:
    case Failing::ResultAfterActing:
        return static_cast<std::uint32_t>(kFailure);
    case Failing::ResultOfMemory:
        return static_cast<std::uint32_t>(E_OUTOFMEMORY);
    case Failing::Status:
        return kGenericError;
    default:
        SetLastError(kError);
        return 0;
    }
}

void HandOverAll(const std::vector<HandOver>& handOvers, Call& call)
{
    for (const HandOver& each : handOvers)
    {
        each.act(call, each);
    }
}
} // namespace

class FunctionHook final : public Hook
{
public:
    FunctionHook(void* replaced, const Interface* owner, const Function& function)
        : Hook(replaced), m_owner(owner), m_function(function)
    {
    }

    bool Before(Call& call) override
    {
        Watch& watch = Watch::Get();
        if (!watch.IsInModule(call.returnAddress))
        {
            if (m_function.isCallback)
            {
                HandOverAll(m_function.before, call);
            }
            return false;
        }
        if (watch.IsToFail(m_owner, m_function, call))
        {
            if (m_function.failing != Failing::ResultAfterActing)
            {
                call.result = AnswerOf(m_function.failing);
                return true;
            }
            watch.m_pending = call.arguments;
        }
        HandOverAll(m_function.before, call);
        return false;
    }

    void After(Call& call) override
    {
        Watch& watch = Watch::Get();
        if (!watch.IsInModule(call.returnAddress))
        {
            return;
        }
        if (watch.m_pending == call.arguments)
        {
            watch.m_pending = nullptr;
            call.result = AnswerOf(m_function.failing);
            return;
        }
        HandOverAll(m_function.after, call);
    }

private:
    const Interface* m_owner;
    const Function& m_function;
};

std::string Watch::Point::Name() const
{
    return (owner == nullptr ? "" : owner->name + "::") + function->name +
           (detail.empty() ? "" : " " + detail) + (origin.empty() ? "" : " of " + origin);
}

Watch& Watch::Get()
{
    static Watch watch;
    return watch;
}

void Watch::Follow(HMODULE module, std::size_t size)
{
    auto* const base = reinterpret_cast<std::uint8_t*>(module);
    m_base = base;
    m_size = size;
    const auto& headers =
        *reinterpret_cast<IMAGE_NT_HEADERS64*>(base + reinterpret_cast<IMAGE_DOS_HEADER*>(base)->e_lfanew);
    m_linkedBase = headers.OptionalHeader.ImageBase;
    const auto& directory = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* imported = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
    for (; imported->Name != 0; ++imported)
    {
        const auto* const library = reinterpret_cast<const char*>(base + imported->Name);
        const auto* named = reinterpret_cast<IMAGE_THUNK_DATA64*>(base + imported->OriginalFirstThunk);
        auto* place = reinterpret_cast<void**>(base + imported->FirstThunk);
        for (; named->u1.AddressOfData != 0; ++named, ++place)
        {
            const std::string name =
                IMAGE_SNAP_BY_ORDINAL64(named->u1.Ordinal)
                    ? std::string(library) + ":" + std::to_string(IMAGE_ORDINAL64(named->u1.Ordinal))
                    : reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + named->u1.AddressOfData)->Name;
            const Function* const function = FindImport(name);
            if (function == nullptr)
            {
                Complain("the module imports " + name + " of " + library +
                         ", which no table of the sweep knows");
            }
            else if (function->failing != Failing::Never || !function->before.empty() ||
                     !function->after.empty())
            {
                Overwrite(place, Import(name, *place, *function));
            }
        }
    }
}

void* Watch::Import(const std::string& name, void* original, const Function& function)
{
    auto& hook = m_imports[name];
    if (!hook)
    {
        hook = std::make_unique<FunctionHook>(original, nullptr, function);
    }
    // The library may have gone with the module, and be back at another address.
    hook->original = original;
    return hook->Entry();
}

void Watch::Forget()
{
    for (auto hook = m_hooks.begin(); hook != m_hooks.end();)
    {
        hook = IsInModule(hook->first) ? m_hooks.erase(hook) : std::next(hook);
    }
    for (const auto& [what, count] : held)
    {
        if (what.first == kMemory)
        {
            std::free(reinterpret_cast<void*>(what.second)); // NOLINT(performance-no-int-to-ptr)
        }
    }
    held.clear();
    m_origins.clear();
    m_callsOnObjects.clear();
    m_base = nullptr;
    m_size = 0;
}

void Watch::Arm(std::size_t failingPoint, bool isForGood)
{
    m_stage = "";
    m_operatorNew = nullptr;
    m_points.clear();
    m_failingStack.clear();
    m_failingPoint = failingPoint;
    m_isForGood = isForGood;
    m_isArmed = true;
}

bool Watch::IsInModule(const void* address) const
{
    const auto* const place = static_cast<const std::uint8_t*>(address);
    return place >= m_base && place < m_base + m_size;
}

bool Watch::IsOperatorNew(const Call& call)
{
    if (m_operatorNew == nullptr)
    {
        m_operatorNew = call.returnAddress;
    }
    return call.returnAddress == m_operatorNew;
}

void Watch::KeepStack()
{
    std::array<void*, 62> frames{};
    const USHORT count = CaptureStackBackTrace(0, static_cast<DWORD>(frames.size()), frames.data(), nullptr);
    for (const void* const frame : std::span(frames).first(count))
    {
        if (IsInModule(frame))
        {
            const auto offset = static_cast<const std::uint8_t*>(frame) - m_base;
            m_failingStack.push_back(m_linkedBase + static_cast<std::uintptr_t>(offset));
        }
    }
}

bool Watch::IsToFail(const Interface* owner, const Function& function, const Call& call)
{
    if (!m_isArmed || function.failing == Failing::Never ||
        (function.mayFail != nullptr && !function.mayFail(call)))
    {
        return false;
    }
    if (function.stage != nullptr)
    {
        m_stage = function.stage(call);
    }
    Point point{owner, &function, {}, {}, m_stage, false};
    if (function.detail != nullptr)
    {
        point.detail = function.detail(call);
    }
    if (owner != nullptr)
    {
        const void* const object = call.Argument<void*>(0);
        const auto origin = m_origins.find(object);
        point.origin = origin == m_origins.end() ? "" : origin->second;
        point.isAgain = ++m_callsOnObjects[{object, &function}] > 1;
    }
    m_points.push_back(std::move(point));
    const std::size_t number = m_points.size();
    if (number == m_failingPoint)
    {
        KeepStack();
    }
    return number == m_failingPoint || (m_isForGood && m_failingPoint != 0 && number > m_failingPoint &&
                                        function.failing == Failing::NoMemory);
}

void Watch::Replace(void** place, const Interface* owner, const Function& function)
{
    auto& hook = m_hooks[place];
    if (hook == nullptr)
    {
        // Never deleted: the method tables of objects outlive the module.
        hook = new FunctionHook(*place, owner, function); // NOLINT(cppcoreguidelines-owning-memory)
        Overwrite(place, hook->Entry());
    }
}

void Watch::Adopt(void* object, const Interface* type)
{
    if (type == nullptr)
    {
        Complain("the module is handed an interface that no table of the sweep knows");
        return;
    }
    auto** const table = *static_cast<void***>(object);
    for (const Interface* level = type; level != nullptr; level = level->base)
    {
        for (const Function& method : level->methods)
        {
            Replace(table + method.slot, level, method);
        }
    }
    const auto complain = [](Call&, const HandOver&) {
        Get().Complain("the module calls a method that no table knows");
    };
    static const Function unknown{.name = "a method that no table knows", .before = {{.act = complain}}};
    for (std::size_t slot = 0; slot < type->slotCount; ++slot)
    {
        Replace(table + slot, type, unknown);
    }
}

void Watch::TakeReference(void* object, const Interface* type, const std::string& origin)
{
    if (object == nullptr)
    {
        return;
    }
    Adopt(object, type);
    const auto address = reinterpret_cast<std::uintptr_t>(object);
    if (!held.contains({kReference, address}))
    {
        // A new object, perhaps at the address of a deleted one.
        std::erase_if(m_callsOnObjects, [&](const auto& calls) { return calls.first.first == object; });
        m_origins[object] = origin;
    }
    Take(kReference, address);
}

void Watch::Give(const std::string& kind, std::uintptr_t what)
{
    const auto entry = held.find({kind, what});
    if (entry != held.end() && --entry->second == 0)
    {
        held.erase(entry);
    }
    else if (entry == held.end() && what != 0)
    {
        Complain("the module gives back a " + kind + " that it does not hold");
    }
}

void Watch::GiveReference(void* object)
{
    // The module's own objects are counted as memory.
    if (object != nullptr && m_hooks.contains(*static_cast<void***>(object) + 2))
    {
        Give(kReference, reinterpret_cast<std::uintptr_t>(object));
    }
}
} // namespace sweep
