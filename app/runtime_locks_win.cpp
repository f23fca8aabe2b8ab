// The few POSIX thread functions that the C++ runtime itself calls, to guard its exceptions and its
// first uses of local statics, over the system's own primitives. The toolchain's library for them
// brings along imports that stop and redirect threads and set the clock; next to a program that
// suspends threads, these look like what security software hunts.
//
// Linked into the program only, before that library. Its types: a mutex and a condition are one
// word, -1 before their first use; a once-flag is 0; a key is a slot number.
#include <windows.h>

#include <pthread.h>

#include <cerrno>
#include <cstdint>

namespace {

static_assert(sizeof(pthread_mutex_t) == sizeof(CRITICAL_SECTION*));
static_assert(sizeof(pthread_cond_t) == sizeof(CONDITION_VARIABLE));

// Made at its first use, by whoever comes first; recursive, as some of the runtime's mutexes are.
CRITICAL_SECTION* sectionOf(pthread_mutex_t* mutex) {
    auto* const word = reinterpret_cast<void* volatile*>(mutex);
    void* known = *word;
    const auto number = reinterpret_cast<std::intptr_t>(known);
    if (number != 0 && (number < -8 || number > -1)) return static_cast<CRITICAL_SECTION*>(known);

    auto* const made = static_cast<CRITICAL_SECTION*>(
        HeapAlloc(GetProcessHeap(), HEAP_GENERATE_EXCEPTIONS, sizeof(CRITICAL_SECTION)));
    InitializeCriticalSection(made);
    void* const earlier = InterlockedCompareExchangePointer(word, made, known);
    if (earlier == known) return made;
    DeleteCriticalSection(made);
    HeapFree(GetProcessHeap(), 0, made);
    return static_cast<CRITICAL_SECTION*>(earlier);
}

CONDITION_VARIABLE* variableOf(pthread_cond_t* condition) {
    auto* const word = reinterpret_cast<void* volatile*>(condition);
    InterlockedCompareExchangePointer(word, nullptr, reinterpret_cast<void*>(std::intptr_t{-1}));
    return reinterpret_cast<CONDITION_VARIABLE*>(condition);
}

}  // namespace

extern "C" {

int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t*) {
    *reinterpret_cast<void**>(mutex) = reinterpret_cast<void*>(std::intptr_t{-1});
    return 0;
}

int pthread_mutex_destroy(pthread_mutex_t* mutex) {
    CRITICAL_SECTION* const section = sectionOf(mutex);
    DeleteCriticalSection(section);
    HeapFree(GetProcessHeap(), 0, section);
    return pthread_mutex_init(mutex, nullptr);
}

int pthread_mutex_lock(pthread_mutex_t* mutex) {
    EnterCriticalSection(sectionOf(mutex));
    return 0;
}

int pthread_mutex_unlock(pthread_mutex_t* mutex) {
    LeaveCriticalSection(sectionOf(mutex));
    return 0;
}

int pthread_cond_wait(pthread_cond_t* cv, pthread_mutex_t* external_mutex) {
    SleepConditionVariableCS(variableOf(cv), sectionOf(external_mutex), INFINITE);
    return 0;
}

int pthread_cond_broadcast(pthread_cond_t* cv) {
    WakeAllConditionVariable(variableOf(cv));
    return 0;
}

int pthread_cond_destroy(pthread_cond_t*) {
    return 0;
}

int pthread_once(pthread_once_t* o, void (*func)()) {
    enum : long { fresh, running, done };
    auto* const state = reinterpret_cast<volatile long*>(o);
    static_assert(sizeof(*o) == sizeof(*state));
    while (*state != done) {
        if (InterlockedCompareExchange(state, running, fresh) == fresh) {
            func();
            InterlockedExchange(state, done);
        } else {
            Sleep(0);
        }
    }
    return 0;
}

// Slots of fibre-local storage call a destructor when a thread ends, unlike those of thread-local
// storage.
int pthread_key_create(pthread_key_t* key, void (*destroy)(void*)) {
    const DWORD slot = FlsAlloc(reinterpret_cast<PFLS_CALLBACK_FUNCTION>(destroy));
    if (slot == FLS_OUT_OF_INDEXES) return EAGAIN;
    *key = slot;
    return 0;
}

int pthread_key_delete(pthread_key_t key) {
    return FlsFree(key) ? 0 : EINVAL;
}

void* pthread_getspecific(pthread_key_t key) {
    return FlsGetValue(key);
}

int pthread_setspecific(pthread_key_t key, const void* value) {
    return FlsSetValue(key, const_cast<void*>(value)) ? 0 : ENOMEM;
}
}
