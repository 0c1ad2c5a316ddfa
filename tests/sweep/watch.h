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

struct Interface;

/// What changes hands by a call that is made.
struct HandOver
{
    void (*act)(Call& call, const HandOver& what) = nullptr;
    /// Which argument carries it, from 0.
    std::size_t argument = 0;
    /// Of an object.
    const Interface* type = nullptr;
    /// Of anything else; what a stream is of.
    std::string kind{};
};

/// One function of the outside, or a method of one of its interfaces.
struct Function
{
    std::string name;
    Failing failing = Failing::Never;
    std::vector<HandOver> before{};
    std::vector<HandOver> after{};
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
    std::string name;
    IID iid{};
    const Interface* base = nullptr;
    /// Those of the bases included.
    std::size_t slotCount = 0;
    std::vector<Function> methods;
};

// Kinds of what changes hands that are known here.
inline const std::string kMemory = "memory";
inline const std::string kReference = "reference";

/// Stands round one module and sees each call that it makes: counts those that may fail, lets a chosen one
/// fail, and keeps book of what changes hands. For the one thread that the module is used on.
class Watch
{
public:
    /// A call, or an allocation, that may fail.
    struct Point
    {
        /// Null for an import.
        const Interface* owner;
        const Function* function;
        std::string detail;
        /// What a stream is of; empty for everything else.
        std::string origin;
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
    void Adopt(void* object, const Interface* type);
    void Take(const std::string& kind, std::uintptr_t what) { ++held[{kind, what}]; }
    void TakeReference(void* object, const Interface* type, const std::string& origin = {});
    void Give(const std::string& kind, std::uintptr_t what);
    void GiveReference(void* object);
    /// Whether it is the module's operator new that asks: the first that does. Whatever else asks belongs to
    /// the runtime libraries.
    bool IsOperatorNew(const Call& call);
    const char* GetStage() const { return m_stage; }
    void SetStage(const char* stage) { m_stage = stage; }
    void Complain(std::string text) { complaints.push_back(std::move(text)); }

    /// What the module holds and has to give back: memory, strings, references and whatever else comes in
    /// pairs, how often.
    std::map<std::pair<std::string, std::uintptr_t>, int> held;
    /// What the module should not have done.
    std::vector<std::string> complaints;

private:
    friend class FunctionHook;

    bool IsInModule(const void* address) const;
    void KeepStack();
    bool IsToFail(const Interface* owner, const Function& function, const Call& call);
    void Replace(void** place, const Interface* owner, const Function& function);

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
    std::map<const void*, std::string> m_origins;
    std::map<std::pair<const void*, const Function*>, int> m_callsOnObjects;
    // The call that is to fail once it has acted, by its arguments.
    const void* m_pending = nullptr;
};
} // namespace sweep
