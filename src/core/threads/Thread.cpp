#include "core/threads/Thread.h"

#include <memory>

namespace Lathe::System {

namespace {

// What the system thread needs, apart from the CThread, which may go before it runs.
struct SStart {
    CThread::Procedure m_Procedure;
    void* m_Context;
};

} // namespace

CThread::CThread(Procedure procedure, void* context, bool startNow)
    : m_Context(context), m_Procedure(procedure) {
    if (startNow)
        CThread::Start();
}

// The lock is held until the handle is known, for the new thread to recognise itself.
void CThread::Start() {
    const Core::CAutoLock lock(m_Lock);
    Detach();
    auto start = std::make_unique<SStart>(SStart{m_Procedure, m_Context});
    m_Joinable = pthread_create(&m_Handle, nullptr, Run, start.get()) == 0;
    if (m_Joinable)
        static_cast<void>(start.release()); // Run deletes it.
    else
        m_Handle = 0;
}

void CThread::Cancel() {
    const Core::CAutoLock lock(m_Lock);
    if (m_Joinable)
        pthread_cancel(m_Handle);
}

bool CThread::IsCurrent() {
    const Core::CAutoLock lock(m_Lock);
    return m_Handle != 0 && pthread_equal(m_Handle, pthread_self());
}

void CThread::Join(int milliseconds) {
    if (milliseconds != -1 || IsCurrent())
        return;
    pthread_t handle = 0;
    {
        const Core::CAutoLock lock(m_Lock);
        if (!m_Joinable)
            return;
        m_Joinable = false;
        handle = m_Handle;
    }
    pthread_join(handle, nullptr);
    const Core::CAutoLock lock(m_Lock);
    if (!m_Joinable) // Else it was started again meanwhile.
        m_Handle = 0;
}

pthread_t CThread::GetHandle() {
    const Core::CAutoLock lock(m_Lock);
    return m_Handle;
}

CThread::~CThread() {
    const Core::CAutoLock lock(m_Lock);
    Detach();
}

void CThread::Detach() {
    if (m_Joinable)
        pthread_detach(m_Handle);
    m_Joinable = false;
    m_Handle = 0;
}

void* CThread::Run(void* argument) {
    const std::unique_ptr<SStart> start(static_cast<SStart*>(argument));
    if (start->m_Procedure && start->m_Context)
        start->m_Procedure(start->m_Context);
    return nullptr;
}

} // namespace Lathe::System
