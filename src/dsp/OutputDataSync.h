// Clocks that pace the refresh of a filter's outputs, counted in samples.
#pragma once

#include "core/Realtime.h"

#include <atomic>

namespace Lathe::Audio::DSP {

class IOutputDataSync {
public:
    virtual bool IsTimeToSync() const LATHE_REALTIME = 0;
    virtual void ResetCounter() LATHE_REALTIME = 0;
    // In hertz; keeps the counter.
    virtual void SetRefreshRate(double rate) = 0;
    virtual double GetRefreshRate() const = 0;
    virtual ~IOutputDataSync() = default;
};

// One thread counts, while others may set the rates.
class COutputDataSync : public IOutputDataSync {
public:
    explicit COutputDataSync(double refreshRate = 0.0) : m_RefreshRate(refreshRate) {}
    COutputDataSync(const COutputDataSync& other) : IOutputDataSync() { *this = other; }
    COutputDataSync& operator=(const COutputDataSync& other);

    bool IsTimeToSync() const LATHE_REALTIME override {
        return m_Counter.load(std::memory_order_relaxed) >=
               m_Period.load(std::memory_order_relaxed);
    }
    void ResetCounter() LATHE_REALTIME override { m_Counter.store(0, std::memory_order_relaxed); }
    void SetRefreshRate(double rate) override;
    double GetRefreshRate() const override { return m_RefreshRate; }

    void AddSamples(int samples) LATHE_REALTIME;
    // In hertz; the next check fires.
    void SetSampleRate(double rate);

private:
    void ComputePeriod();

    std::atomic<int> m_Counter{0};
    // In samples; 0 while a rate is 0.
    std::atomic<int> m_Period{0};
    std::atomic<double> m_RefreshRate;
    std::atomic<double> m_SampleRate{0.0};
};

// Two filters' clocks seen as one; either may be missing.
class COutputDataSyncMux : public IOutputDataSync {
public:
    // Neither is owned.
    void Attach(IOutputDataSync* first, IOutputDataSync* second) {
        m_First = first;
        m_Second = second;
    }

    bool IsTimeToSync() const LATHE_REALTIME override;
    void ResetCounter() LATHE_REALTIME override;
    void SetRefreshRate(double rate) override;
    // The larger of the two, 0.0 without any.
    double GetRefreshRate() const override;

private:
    IOutputDataSync* m_First = nullptr;
    IOutputDataSync* m_Second = nullptr;
};

} // namespace Lathe::Audio::DSP
