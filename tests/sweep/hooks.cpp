#include "sweep/hooks.h"

#include <cstring>

// Called with the hook in r11 and everything else as the caller left it. Keeps the arguments where the
// calling convention reserves room for them, asks SweepBefore, calls the original with a copy of twelve of
// them, and shows the result to SweepAfter. Offsets from rbp: 0x00 arguments for the callee, 0x60 four
// floating-point arguments, 0x80 hook, 0x88 result, 0x98 return address, 0xa0 arguments.
asm(R"(
    .text
    .globl SweepThunk
    .seh_proc SweepThunk
SweepThunk:
    push %rbp
    .seh_pushreg %rbp
    sub $0x90, %rsp
    .seh_stackalloc 0x90
    mov %rsp, %rbp
    .seh_setframe %rbp, 0
    .seh_endprologue
    mov %rcx, 0xa0(%rbp)
    mov %rdx, 0xa8(%rbp)
    mov %r8, 0xb0(%rbp)
    mov %r9, 0xb8(%rbp)
    movsd %xmm0, 0x60(%rbp)
    movsd %xmm1, 0x68(%rbp)
    movsd %xmm2, 0x70(%rbp)
    movsd %xmm3, 0x78(%rbp)
    mov %r11, 0x80(%rbp)
    mov %r11, %rcx
    lea 0xa0(%rbp), %rdx
    mov 0x98(%rbp), %r8
    lea 0x88(%rbp), %r9
    call SweepBefore
    test %eax, %eax
    jnz 1f
    movups 0xc0(%rbp), %xmm4
    movups %xmm4, 0x20(%rbp)
    movups 0xd0(%rbp), %xmm4
    movups %xmm4, 0x30(%rbp)
    movups 0xe0(%rbp), %xmm4
    movups %xmm4, 0x40(%rbp)
    movups 0xf0(%rbp), %xmm4
    movups %xmm4, 0x50(%rbp)
    movsd 0x60(%rbp), %xmm0
    movsd 0x68(%rbp), %xmm1
    movsd 0x70(%rbp), %xmm2
    movsd 0x78(%rbp), %xmm3
    mov 0xa0(%rbp), %rcx
    mov 0xa8(%rbp), %rdx
    mov 0xb0(%rbp), %r8
    mov 0xb8(%rbp), %r9
    mov 0x80(%rbp), %rax
    call *8(%rax)
    mov %rax, 0x88(%rbp)
    mov 0x80(%rbp), %rcx
    lea 0xa0(%rbp), %rdx
    mov 0x98(%rbp), %r8
    lea 0x88(%rbp), %r9
    call SweepAfter
1:
    mov 0x88(%rbp), %rax
    lea 0x90(%rbp), %rsp
    pop %rbp
    ret
    .seh_endproc
)");

extern "C"
{
    void SweepThunk();

    __attribute__((used)) int SweepBefore(sweep::Hook* hook,
                                          const std::uintptr_t* arguments,
                                          const void* returnAddress,
                                          std::uintptr_t* result)
    {
        sweep::Call call{arguments, returnAddress, 0};
        const bool isAnswered = hook->Before(call);
        *result = call.result;
        return isAnswered ? 1 : 0;
    }

    __attribute__((used)) void SweepAfter(sweep::Hook* hook,
                                          const std::uintptr_t* arguments,
                                          const void* returnAddress,
                                          std::uintptr_t* result)
    {
        // The caller may ask why the original failed.
        const DWORD error = GetLastError();
        sweep::Call call{arguments, returnAddress, *result};
        hook->After(call);
        *result = call.result;
        SetLastError(error);
    }
}

namespace sweep
{
namespace
{
/// mov r11, hook; mov rax, SweepThunk; jmp rax
void* MakeEntry(const Hook* hook)
{
    constexpr std::size_t kRoom = 1U << 20U;
    constexpr std::size_t kEntrySize = 32;
    static auto* const room = static_cast<std::uint8_t*>(
        VirtualAlloc(nullptr, kRoom, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
    static std::size_t used = 0;
    std::uint8_t* const entry = room + used;
    used += kEntrySize;
    const auto thunk = reinterpret_cast<std::uintptr_t>(&SweepThunk);
    std::memcpy(entry, "\x49\xBB", 2);
    std::memcpy(entry + 2, &hook, sizeof(hook));
    std::memcpy(entry + 10, "\x48\xB8", 2);
    std::memcpy(entry + 12, &thunk, sizeof(thunk));
    std::memcpy(entry + 20, "\xFF\xE0", 2);
    return entry;
}
} // namespace

Hook::Hook(void* replaced) : original(replaced), m_entry(MakeEntry(this)) {}

void Overwrite(void** place, void* value)
{
    DWORD protection = 0;
    VirtualProtect(place, sizeof(value), PAGE_READWRITE, &protection);
    *place = value;
    VirtualProtect(place, sizeof(value), protection, &protection);
}
} // namespace sweep
