#include "platform/rtas/Instance.h"

#include "platform/rtas/DAEError.h"
#include "platform/rtas/EffectProcess.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <utility>

// A place in the table below.
struct RTASProcess {
    std::atomic<RTASLibrary::CInstance*> m_Instance{nullptr};
};

namespace RTASLibrary {

namespace {

// The table never moves, so that a look into it needs no lock, and a handle from anywhere can be
// told by its address alone.
std::array<RTASProcess, 4096> g_Processes;
// Of those who change the table.
std::mutex g_Lock;
std::size_t g_NextPlace = 0;

bool IsInTable(const RTASProcess* process) {
    const auto offset = reinterpret_cast<std::uintptr_t>(process) -
                        reinterpret_cast<std::uintptr_t>(g_Processes.data());
    return offset < sizeof g_Processes && offset % sizeof(RTASProcess) == 0;
}

bool Aim(float* const* from, std::vector<float*>& to) {
    if (!from && !to.empty())
        return false;
    for (std::size_t i = 0; i < to.size(); ++i) {
        if (!from[i])
            return false;
        to[i] = from[i];
    }
    return true;
}

// What the host gave with a block is within reach of the process for no longer than that, even if
// the block ends in an exception.
class CBlockScope {
public:
    CBlockScope(CEffectProcessMIDI* process, RTASRender& render)
        : m_Process(process), m_Render(render) {
        if (m_Process)
            m_Process->BeginBlock(m_Render);
    }
    ~CBlockScope() {
        if (m_Process)
            m_Process->EndBlock(m_Render);
    }
    CBlockScope(const CBlockScope&) = delete;
    CBlockScope& operator=(const CBlockScope&) = delete;

private:
    CEffectProcessMIDI* m_Process;
    RTASRender& m_Render;
};

CEffectProcessRTAS& ToEffect(CProcess* process) {
    if (auto* const effect = dynamic_cast<CEffectProcessRTAS*>(process))
        return *effect;
    throw CDAEError(RTAS_NO_PROCESS);
}

} // namespace

CInstance::CInstance(std::unique_ptr<CProcess> process, const SProcessSetup& setup)
    : m_Process(std::move(process)),
      m_Effect(ToEffect(m_Process.get())),
      m_MIDI(setup.m_IsAudioSuite ? nullptr : dynamic_cast<CEffectProcessMIDI*>(m_Process.get())),
      m_Inputs(static_cast<std::size_t>(setup.m_Inputs)),
      m_Outputs(static_cast<std::size_t>(setup.m_Outputs)) {
    m_Process->SetUp(setup);
    m_Process->InitControls();
    m_Process->Initialize();
}

CInstance::~CInstance() = default;

bool CInstance::AimBuffers(const RTASRender& render) {
    return Aim(render.inputs, m_Inputs) && Aim(render.outputs, m_Outputs);
}

void CInstance::RenderBlock(RTASRender& render) {
    const CBlockScope scope(m_MIDI, render);
    m_Effect.RenderAudio(m_Inputs.data(), m_Outputs.data(), render.numSamples);
}

const char* CInstance::Lend(std::string text) {
    m_Lent = std::move(text);
    return m_Lent.c_str();
}

// Places are taken in turn, so that the handle of a deleted instance stays unknown for long.
RTASProcess* AddInstance(std::unique_ptr<CInstance> instance) {
    const std::lock_guard lock(g_Lock);
    for (std::size_t i = 0; i < g_Processes.size(); ++i) {
        RTASProcess& process = g_Processes[g_NextPlace++ % g_Processes.size()];
        if (!process.m_Instance.load(std::memory_order_relaxed)) {
            process.m_Instance.store(instance.release(), std::memory_order_release);
            return &process;
        }
    }
    return nullptr;
}

CInstance* FindInstance(const RTASProcess* process) {
    return IsInTable(process) ? process->m_Instance.load(std::memory_order_acquire) : nullptr;
}

void DeleteInstance(RTASProcess* process) {
    std::unique_ptr<CInstance> deleted;
    const std::lock_guard lock(g_Lock);
    deleted.reset(process->m_Instance.exchange(nullptr, std::memory_order_acq_rel));
}

void DeleteAllInstances() {
    for (RTASProcess& process : g_Processes)
        DeleteInstance(&process);
}

} // namespace RTASLibrary
