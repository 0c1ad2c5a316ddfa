#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "sweep/hooks.h"

namespace sweep
{
/// What a call answers that is made to fail.
enum class Failing
{
    Never,
    /// An HRESULT.
    Result,
    /// An HRESULT, having done its work: for what closes or frees, which does so whatever it answers.
    ResultAfterActing,
    /// A null pointer, for want of memory.
    NoMemory,
    /// E_OUTOFMEMORY, from what fails for no other reason.
    ResultOfMemory,
    /// FALSE or 0, with the error for GetLastError.
    Error,
    /// A status of GDI+.
    Status
};

/// The failure that is made, as the two kinds of calls know it.
constexpr DWORD kError = ERROR_DISK_OPERATION_FAILED;
constexpr HRESULT kFailure = __HRESULT_FROM_WIN32(kError);

/// One function of the outside, or a method of one of its interfaces.
struct Function
{
    const char* name;
    Failing failing = Failing::Never;
    /// What changes hands by a call that is made; null for nothing.
    void (*before)(Call& call) = nullptr;
    void (*after)(Call& call) = nullptr;
    /// The calls that may fail; null for all of them.
    bool (*mayFail)(const Call& call) = nullptr;
    /// Tells calls apart by what they are about; null where there is nothing to tell.
    std::string (*detail)(const Call& call) = nullptr;
    /// What the module is about from this call on; null where that does not change.
    const char* (*stage)(const Call& call) = nullptr;
    /// A method's place in its interface.
    std::size_t slot = 0;
    /// Of the module's own, called from outside: `before` tells what it is handed.
    bool isCallback = false;
};

struct Interface
{
    IID iid;
    const char* name;
    const Interface* base;
    /// Those of the bases included.
    std::size_t slotCount;
    std::vector<Function> methods;
};

// Kinds of what changes hands; each has one name, at one address.
inline constexpr char kMemory[] = "memory";
inline constexpr char kReference[] = "reference";
inline constexpr char kThreadSlot[] = "thread slot";

/// What the module holds and has to give back: memory, strings, references and whatever else comes in pairs.
class Ledger
{
public:
    using Key = std::pair<const char*, std::uintptr_t>;

    void Take(const char* kind, std::uintptr_t what) { ++m_held[{kind, what}]; }
    /// False when it is not held.
    bool Give(const char* kind, std::uintptr_t what);
    const std::map<Key, int>& Held() const { return m_held; }
    void Clear() { m_held.clear(); }

private:
    std::map<Key, int> m_held;
};

/// Stands round one module and sees each call that it makes: counts those that may fail, lets a chosen one
/// fail, and keeps book of what changes hands. For the one thread that the module is used on.
class Watch
{
public:
    /// A call, or an allocation, that may fail.
    struct Point
    {
        /// The interface; null for an import.
        const char* owner;
        const Function* function;
        std::string detail;
        /// What a stream is of; null for everything else.
        const char* origin;
        /// What the module was about.
        const char* stage;
        /// Not the first of its kind on this object.
        bool isAgain;

        /// As "malloc" or "IPrintReadStream::ReadBytes of a page".
        std::string Name() const;
    };

    static Watch& Get();

    /// Replaces the imports of a module that is about to start; nothing of it has run yet.
    void Follow(HMODULE module, std::size_t size);
    /// The pointer that stands in for an import.
    void* Import(const std::string& name, void* original, const Function& function);
    /// The module is gone. Frees the memory that it left.
    void Forget();

    /// From here on, points are counted, from 1; the one of this number fails, 0 for none. `isForGood` lets
    /// all memory fail from there on.
    void Arm(std::size_t failingPoint, bool isForGood);
    void Disarm() { m_isArmed = false; }
    const std::vector<Point>& Points() const { return m_points; }
    /// Where the module was when the point failed, innermost first: the addresses that it was linked for.
    const std::vector<std::uintptr_t>& FailingStack() const { return m_failingStack; }

    /// Replaces the methods of an object that the module is given.
    void Adopt(void* object, const IID& iid);
    void Take(const char* kind, std::uintptr_t what) { ledger.Take(kind, what); }
    void TakeReference(void* object, const IID& iid, const char* origin = nullptr);
    void Give(const char* kind, std::uintptr_t what);
    void GiveReference(void* object);
    /// Whether it is the module's operator new that asks: the first that does. Whatever else asks belongs to
    /// the runtime libraries.
    bool IsOperatorNew(const Call& call);
    const char* GetStage() const { return m_stage; }
    void SetStage(const char* stage) { m_stage = stage; }
    void Complain(std::string text) { complaints.push_back(std::move(text)); }

    Ledger ledger;
    /// What the module should not have done.
    std::vector<std::string> complaints;

private:
    friend class FunctionHook;

    bool IsInModule(const void* address) const;
    void KeepStack();
    bool IsToFail(const char* owner, const Function& function, const Call& call);
    void Replace(void** place, const char* owner, const Function& function);

    const std::uint8_t* m_base = nullptr;
    std::size_t m_size = 0;
    std::uintptr_t m_linkedBase = 0;
    std::vector<Point> m_points;
    std::vector<std::uintptr_t> m_failingStack;
    std::size_t m_failingPoint = 0;
    bool m_isForGood = false;
    bool m_isArmed = false;
    const char* m_stage = "";
    const void* m_operatorNew = nullptr;
    // By place: whose pointer was replaced there.
    std::map<void**, class FunctionHook*> m_hooks;
    std::map<std::string, std::unique_ptr<class FunctionHook>> m_imports;
    std::map<const void*, const char*> m_origins;
    std::map<std::pair<const void*, const Function*>, int> m_callsOnObjects;
    // The call that is to fail once it has acted, by its arguments.
    const void* m_pending = nullptr;
};
} // namespace sweep
