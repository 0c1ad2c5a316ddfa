// Called with the hook in r11 and everything else as the caller left it. Keeps the arguments where the
// calling convention reserves room for them, asks SweepBefore, calls the original with a copy of twelve of
// them, and shows the result to SweepAfter. Offsets from rbp: 0x00 arguments for the callee, 0x60 four
// floating-point arguments, 0x80 hook, 0x88 result, 0x98 return address, 0xa0 arguments.
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
