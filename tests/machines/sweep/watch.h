#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "machines/sweep/hooks.h"

namespace sweep
{
/// What a failing call returns.
enum class Failing
{
    Never,
    /// An HRESULT.
    Result,
    /// An HRESULT after the call has done its work: for calls that close or free even if they fail.
    ResultAfterActing,
    /// A null pointer: out of memory.
    NoMemory,
    /// E_OUTOFMEMORY, for calls that fail for no other reason.
    ResultOfMemory,
    /// FALSE or 0, with the error for GetLastError.
    Error,
    /// A status of GDI+.
    Status
};

/// The failure as a Win32 error and as an HRESULT.
constexpr DWORD kError = ERROR_DISK_OPERATION_FAILED;
constexpr HRESULT kFailure = __HRESULT_FROM_WIN32(kError);

struct Interface;

/// A resource that a call gives to the module or takes from it.
struct HandOver
{
    void (*act)(Call& call, const HandOver& what) = nullptr;
    /// The index of the argument, from 0.
    std::size_t argument = 0;
    /// The interface, if it is an object.
    const Interface* type = nullptr;
    /// The kind of any other resource; for a stream, the part that it belongs to.
    std::string kind{};
};

/// A function that the module imports, or a method that it calls.
struct Function
{
    std::string name;
    Failing failing = Failing::Never;
    std::vector<HandOver> before{};
    std::vector<HandOver> after{};
    /// Whether this call may fail; null if all calls may.
    bool (*mayFail)(const Call& call) = nullptr;
    /// Text that distinguishes calls of the function, such as the name of a property; may be null.
    std::string (*detail)(const Call& call) = nullptr;
    /// The stage of the job that begins with this call; null if the stage does not change.
    const char* (*stage)(const Call& call) = nullptr;
    /// The slot of a method in its interface.
    std::size_t slot = 0;
    /// The pipeline calls this method of the module; `before` says what the module receives.
    bool isCallback = false;
};

struct Interface
{
    std::string name;
    IID iid{};
    const Interface* base = nullptr;
    /// Including the slots of its bases.
    std::size_t slotCount = 0;
    std::vector<Function> methods;
};

// Kinds of resources that the code of the watch uses itself.
inline const std::string kMemory = "memory";
inline const std::string kReference = "reference";

/// Intercepts every call that one module makes. It counts the calls that may fail, makes a chosen one fail,
/// and tracks the resources that the module holds. For the thread that uses the module.
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
        /// The part that a stream belongs to; empty for anything else.
        std::string origin;
        /// The stage of the job.
        const char* stage;
        /// Whether the same call was made on this object before.
        bool isAgain;

        /// Such as "malloc" or "IPrintReadStream::ReadBytes of a page".
        std::string Name() const;
    };

    static Watch& Get();

    /// Replaces the imports of a module that is loaded but has not run yet.
    void Follow(HMODULE module, std::size_t size);
    /// The pointer that replaces an import.
    void* Import(const std::string& name, void* original, const Function& function);
    /// Call it after the module is unloaded. Frees the memory that the module leaked.
    void Forget();

    /// Starts counting points, from 1. The point with this number fails; 0 for none. With `isForGood` every
    /// allocation after it fails too.
    void Arm(std::size_t failingPoint, bool isForGood);
    void Disarm() { m_isArmed = false; }
    const std::vector<Point>& Points() const { return m_points; }
    /// The call stack of the failing point, innermost first, as addresses that the module was linked for.
    const std::vector<std::uintptr_t>& FailingStack() const { return m_failingStack; }

    /// Replaces the methods of an object that the module receives.
    void Adopt(void* object, const Interface* type);
    void Take(const std::string& kind, std::uintptr_t what) { ++held[{kind, what}]; }
    void TakeReference(void* object, const Interface* type, const std::string& origin = {});
    void Give(const std::string& kind, std::uintptr_t what);
    void GiveReference(void* object);
    /// Whether the call comes from the module's operator new, which is the first caller. Other callers belong
    /// to the runtime libraries.
    bool IsOperatorNew(const Call& call);
    const char* GetStage() const { return m_stage; }
    void SetStage(const char* stage) { m_stage = stage; }
    void Complain(std::string text) { complaints.push_back(std::move(text)); }

    /// The resources that the module holds and must release, with their number: memory, strings, references
    /// and others.
    std::map<std::pair<std::string, std::uintptr_t>, int> held;
    /// Errors of the module.
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
    // By the address of the pointer that was replaced.
    std::map<void**, class FunctionHook*> m_hooks;
    std::map<std::string, std::unique_ptr<class FunctionHook>> m_imports;
    std::map<const void*, std::string> m_origins;
    std::map<std::pair<const void*, const Function*>, int> m_callsOnObjects;
    // The arguments of the call that fails after it has done its work.
    const void* m_pending = nullptr;
};
} // namespace sweep
