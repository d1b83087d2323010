#include "platform/win32/guard_thunk.h"

#include <windows.h>

#ifdef _MSC_VER

namespace pmx::win32 {

bool CallProtected(ThunkFunction function, void* context) {
    __try {
        function(context);
        return true;
    } __except (EXCEPTION_EXECUTE_HANDLER) {
        return false;
    }
}

void CallThen(ThunkFunction function, void* context, ThunkFunction cleanup, void* cleanupContext) {
    __try {
        function(context);
    } __finally {
        cleanup(cleanupContext);
    }
}

} // namespace pmx::win32

#else

// GCC has no __try. Both functions are what a compiler that has it makes of the ones above: a frame whose
// handler is the system's __C_specific_handler and whose scope table names the call. The `nop` behind each
// call keeps the return address, by which the handler finds the scope, inside of it.
//
// A scope is begin, end, filter or termination handler, target. Filter 1 is EXCEPTION_EXECUTE_HANDLER; target
// 0 makes the third field a termination handler, which gets the frame's stack pointer as its second argument.
asm(R"(
    .text
    .p2align 4
    .globl PmxCallProtected
    .def PmxCallProtected; .scl 2; .type 32; .endef
    .seh_proc PmxCallProtected
PmxCallProtected:
    subq $40, %rsp
    .seh_stackalloc 40
    .seh_endprologue
    movq %rcx, %rax
    movq %rdx, %rcx
.Lpmx_protected_begin:
    callq *%rax
    nop
.Lpmx_protected_end:
    movl $1, %eax
    addq $40, %rsp
    ret
.Lpmx_protected_raised:
    xorl %eax, %eax
    addq $40, %rsp
    ret
    .seh_handler __C_specific_handler, @except
    .seh_handlerdata
    .long 1
    .rva .Lpmx_protected_begin, .Lpmx_protected_end
    .long 1
    .rva .Lpmx_protected_raised
    .text
    .seh_endproc

    .p2align 4
    .globl PmxCallThen
    .def PmxCallThen; .scl 2; .type 32; .endef
    .seh_proc PmxCallThen
PmxCallThen:
    subq $56, %rsp
    .seh_stackalloc 56
    .seh_endprologue
    movq %r8, 32(%rsp)
    movq %r9, 40(%rsp)
    movq %rcx, %rax
    movq %rdx, %rcx
.Lpmx_then_begin:
    callq *%rax
    nop
.Lpmx_then_end:
    movq 40(%rsp), %rcx
    callq *32(%rsp)
    nop
    addq $56, %rsp
    ret
    .seh_handler __C_specific_handler, @unwind
    .seh_handlerdata
    .long 1
    .rva .Lpmx_then_begin, .Lpmx_then_end, .Lpmx_then_unwound
    .long 0
    .text
    .seh_endproc

.Lpmx_then_unwound:
    movq 40(%rdx), %rcx
    movq 32(%rdx), %rax
    jmpq *%rax
)");

extern "C" {
int PmxCallProtected(pmx::win32::ThunkFunction function, void* context);
void PmxCallThen(pmx::win32::ThunkFunction function, void* context, pmx::win32::ThunkFunction cleanup,
                 void* cleanupContext);
}

namespace pmx::win32 {

bool CallProtected(ThunkFunction function, void* context) {
    return PmxCallProtected(function, context) != 0;
}

void CallThen(ThunkFunction function, void* context, ThunkFunction cleanup, void* cleanupContext) {
    PmxCallThen(function, context, cleanup, cleanupContext);
}

} // namespace pmx::win32

#endif
