// The compiler has no words for a handler of the system's own exceptions. A vectored handler would
// see every fault first, also those that the library expects and handles; a frame's handler sees
// what is left, and unwinding to it lets the library's own clean-up run.
#include "diagnosis/guarded_call_win.h"

#include <windows.h>

#include "diagnosis/suspended_thread_win.h"

extern "C" {

// Faults have the severity of errors; the runtime's own C++ exceptions have none.
LONG mireloFaultFilter(EXCEPTION_POINTERS* fault, void*) {
    const bool isError = fault->ExceptionRecord->ExceptionCode >> 30 == 3;
    if (!isError) return EXCEPTION_CONTINUE_SEARCH;
    letGoOfHeldThread();
    return EXCEPTION_EXECUTE_HANDLER;
}

int mireloRunGuarded(void (*work)(void*), void* context);
}

// Returns 1 when `work` returned, 0 when a fault led to the landing place.
asm(R"(
    .text
    .globl mireloRunGuarded
    .def mireloRunGuarded; .scl 2; .type 32; .endef
    .seh_proc mireloRunGuarded
mireloRunGuarded:
    subq $40, %rsp
    .seh_stackalloc 40
    .seh_endprologue
.LmireloGuardedBegin:
    movq %rcx, %rax
    movq %rdx, %rcx
    call *%rax
    nop
.LmireloGuardedEnd:
    movl $1, %eax
    addq $40, %rsp
    ret
.LmireloFaulted:
    xorl %eax, %eax
    addq $40, %rsp
    ret
    .seh_handler __C_specific_handler, @except
    .seh_handlerdata
    .long 1
    .rva .LmireloGuardedBegin, .LmireloGuardedEnd, mireloFaultFilter, .LmireloFaulted
    .text
    .seh_endproc
)");

bool runGuarded(void (*work)(void* context), void* context) {
    return mireloRunGuarded(work, context) != 0;
}
