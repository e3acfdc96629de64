// A command for the queues of another thread, whose target may die while it waits there.
#pragma once

#include "core/events/Command.h"
#include "core/threads/CriticalSection.h"
#include "core/threads/ThreadInvoker.h"

#include <atomic>
#include <memory>
#include <new>

namespace Lathe::System {

// Post: the queue becomes one more owner of one and the same command, so that nothing is allocated
// but what the queue takes for itself. Target dies: it disconnects; what still waits does nothing,
// and goes with its queues.
template <class T>
class TPostedCommand {
public:
    using Member = void (T::*)();

    TPostedCommand(T& object, Member member) : m_Shared(new CShared(object, member)) {}
    ~TPostedCommand() { Disconnect(); }

    // Any thread may call. Nothing runs if the object disconnects first.
    void Post(IThreadInvoker& invoker) {
        m_Shared->AddRef();
        invoker.Post(m_Shared.get(), true);
    }
    // From here on nothing runs. Waits for a run in progress on another thread, which therefore
    // must not wait for the thread that calls.
    void Disconnect() { m_Shared->Disconnect(); }

private:
    class CShared final : public Core::ICommand {
    public:
        CShared(T& object, Member member) : m_Object(&object), m_Member(member) {}

        void Execute() override {
            const Core::CAutoLock lock(m_Lock);
            if (m_Object)
                (m_Object->*m_Member)();
        }
        void Disconnect() {
            const Core::CAutoLock lock(m_Lock);
            m_Object = nullptr;
        }
        void AddRef() { m_Owners.fetch_add(1, std::memory_order_relaxed); }
        // Each owner deletes the command as if it were the only one; the last one means it.
        void operator delete(CShared* command, std::destroying_delete_t) {
            if (command->m_Owners.fetch_sub(1, std::memory_order_acq_rel) > 1)
                return;
            command->~CShared();
            ::operator delete(command);
        }

    private:
        System::CCriticalSection m_Lock;
        T* m_Object;
        Member m_Member;
        std::atomic<int> m_Owners{1};
    };

    std::unique_ptr<CShared> m_Shared;
};

} // namespace Lathe::System
