// Windows as it seldom is: functions that the product imports, imitated for the length of a test.
//
// The linker takes a definition of `__imp_Name` from a test's object before it looks into the
// import library, so the product's unchanged objects call the test. In a test file, at namespace
// level:
//
//   IMITATE("kernel32.dll", GetThreadContext);
//
// and in a test, until the end of the scope:
//
//   const Staged fails(GetThreadContextImitation, [](HANDLE, CONTEXT*) { return FALSE; });
//
// Whatever is not staged does what Windows does. Each function is imitated in one file of the
// program; the test's own calls and the test framework's are imitated too.
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
    using Function = Result(Arguments...);

    Imitation(const char* library, const char* name) : library_(library), name_(name) {}

    /// What Windows does.
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

    Result call(Arguments... arguments) {
        return instead ? instead(arguments...) : real(arguments...);
    }

    std::function<Function> instead;

  private:
    const char* library_;
    const char* name_;
    Function* real_ = nullptr;
};

template <auto& imitation, typename Function>
struct Entry;

template <auto& imitation, typename Result, typename... Arguments>
struct Entry<imitation, Result(Arguments...)> {
    static Result call(Arguments... arguments) { return imitation.call(arguments...); }
};

/// Puts a function in Windows' place for as long as it lives.
template <typename Function>
class Staged {
  public:
    template <typename Instead>
    Staged(Imitation<Function>& imitation, Instead instead) : imitation_(imitation) {
        imitation_.instead = std::move(instead);
    }
    Staged(const Staged&) = delete;
    Staged& operator=(const Staged&) = delete;
    ~Staged() { imitation_.instead = nullptr; }

  private:
    Imitation<Function>& imitation_;
};
template <typename Function, typename Instead>
Staged(Imitation<Function>&, Instead) -> Staged<Function>;

#define IMITATE(library, name)                                                         \
    static Imitation<decltype(::name)> name##Imitation(library, #name);                \
    extern "C" {                                                                       \
    extern const void* const __imp_##name;                                             \
    const void* const __imp_##name =                                                   \
        reinterpret_cast<const void*>(Entry<name##Imitation, decltype(::name)>::call); \
    }                                                                                  \
    static_assert(true)
