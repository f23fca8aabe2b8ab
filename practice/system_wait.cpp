#include "practice/system_wait.h"

namespace {

struct PoolTraits {
    using Type = PTP_POOL;
    static Type invalid() { return nullptr; }
    static void close(Type pool) { CloseThreadpool(pool); }
};

struct PoolWorkTraits {
    using Type = PTP_WORK;
    static Type invalid() { return nullptr; }
    static void close(Type work) { CloseThreadpoolWork(work); }
};

struct Before {
    const Work& work;
    Hang& hang;
};

void CALLBACK RunBefore(PTP_CALLBACK_INSTANCE instance, void* context, PTP_WORK) {
    const Before& before = *static_cast<const Before*>(context);
    before.work.run(before.work.context);
    SetEventWhenCallbackReturns(instance, before.hang.inPlace.get());
}

void CALLBACK RunAfter(PTP_CALLBACK_INSTANCE, void* context, PTP_WORK) {
    const Work& after = *static_cast<const Work*>(context);
    after.run(after.context);
}

}  // namespace

void HangInSystemWait(const Work& before, Hang& hang, const Work& after) {
    // One thread at least and at most: both callbacks run on it, and it stays in between.
    const UniqueHandle<PoolTraits> pool(CreateThreadpool(nullptr));
    SetThreadpoolThreadMaximum(pool.get(), 1);
    SetThreadpoolThreadMinimum(pool.get(), 1);
    TP_CALLBACK_ENVIRON environment;
    InitializeThreadpoolEnvironment(&environment);
    SetThreadpoolCallbackPool(&environment, pool.get());

    Before first = {before, hang};
    const UniqueHandle<PoolWorkTraits> firstWork(
        CreateThreadpoolWork(RunBefore, &first, &environment));
    Work last = after;
    const UniqueHandle<PoolWorkTraits> lastWork(
        CreateThreadpoolWork(RunAfter, &last, &environment));
    SubmitThreadpoolWork(firstWork.get());
    WaitForSingleObject(hang.over.get(), INFINITE);
    SubmitThreadpoolWork(lastWork.get());
    WaitForThreadpoolWorkCallbacks(lastWork.get(), FALSE);
}
