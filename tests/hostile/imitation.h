// Windows as it seldom is: functions that the product imports, imitated for the length of a test.
// The linker takes a definition of `__imp_Name` from a test's object before it looks into the
// import library, so the product's unchanged objects call the test. At namespace level stands
//   IMITATE("kernel32.dll", GetThreadContext);
// and in a test, for a scope: const Staged failing(GetThreadContextImitation, fails);
// Whatever is not staged does what Windows does. The test's own calls are imitated too.
#pragma once

#include <windows.h>

#include <winternl.h>

#include <functional>
#include <utility>

extern "C" NTSTATUS NTAPI LdrGetProcedureAddress(HMODULE module, ANSI_STRING* name, ULONG ordinal,
                                                 void** address);

template <typename Function>
class Imitation;

template <typename Result, typename... Arguments>
class Imitation<Result(Arguments...)> {
  public:
    /// Ready before the first constructor runs: the runtime's own start is imitated too.
    constexpr Imitation(const char* library, const char* name) : library_(library), name_(name) {}

    Result real(Arguments... arguments) {
        if (real_ == nullptr) {
            // Not by GetProcAddress, which may be imitated itself.
            ANSI_STRING name{};
            RtlInitAnsiString(&name, name_);
            LdrGetProcedureAddress(LoadLibraryA(library_), &name, 0,
                                   reinterpret_cast<void**>(&real_));
        }
        return real_(arguments...);
    }

    template <Imitation& imitation>
    static Result entry(Arguments... arguments) {
        if (imitation.instead == nullptr) return imitation.real(arguments...);
        return (*imitation.instead)(arguments...);
    }

    const std::function<Result(Arguments...)>* instead = nullptr;

  private:
    const char* library_;
    const char* name_;
    Result (*real_)(Arguments...) = nullptr;
};

/// Puts a function in Windows' place for as long as it lives; one staged inside another comes
/// first.
template <typename Function>
class Staged {
  public:
    template <typename Instead>
    Staged(Imitation<Function>& imitation, Instead instead)
        : imitation_(imitation), before_(imitation.instead), instead_(std::move(instead)) {
        imitation_.instead = &instead_;
    }
    Staged(const Staged&) = delete;
    Staged& operator=(const Staged&) = delete;
    ~Staged() { imitation_.instead = before_; }

  private:
    Imitation<Function>& imitation_;
    const std::function<Function>* const before_;
    const std::function<Function> instead_;
};
template <typename Function, typename Instead>
Staged(Imitation<Function>&, Instead) -> Staged<Function>;

inline constexpr auto fails = [](auto...) { return FALSE; };
inline constexpr auto crashes = [](auto...) -> BOOL {
    volatile int* volatile nowhere = nullptr;
    *nowhere = 1;
    return FALSE;
};

/// What GetProcAddress would return for `function`.
template <typename Function>
FARPROC procedure(Function* function) {
    return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(function));
}

// Some of the compiler's headers call through the import library's stub, so that is there too.
#define IMITATE(library, name)                                                                     \
    inline constinit Imitation<decltype(::name)> name##Imitation(library, #name);                  \
    extern "C" {                                                                                   \
    __declspec(selectany) const void* __imp_                                                       \
        ##name = reinterpret_cast<const void*>(decltype(name##Imitation)::entry<name##Imitation>); \
    }                                                                                              \
    asm(".section .text$imitated_" #name ",\"x\"\n.linkonce discard\n.globl " #name "\n" #name     \
        ": jmp *__imp_" #name "(%rip)\n.text")
