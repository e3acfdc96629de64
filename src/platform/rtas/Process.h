// One instance of a plug-in, as the host's plug-in library keeps it: controls and chunks.
//
// Instance made: constructor, InitControls, Initialize. Control moved by the host:
// OnControlValueChanged. Control moved by the plug-in: SetControlValue, which the host hears and
// answers at once through OnControlValueChanged. Session stored: GetChunkSize and GetChunk for each
// code; restored: SetChunk.
#pragma once

#include "core/Realtime.h"
#include "platform/rtas/Dispatcher.h"
#include "platform/rtas/PluginControl.h"

#include <array>
#include <atomic>
#include <bit>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

// A chunk in memory and in a session, whose byte order is this one on all machines. The data
// follow.
struct SChunkRecord {
    std::int32_t m_Size; // In bytes, header included.
    std::uint8_t m_LibraryFields[16];
    std::uint32_t m_Code;
    std::uint8_t m_MoreLibraryFields[32];
};
static_assert(sizeof(SChunkRecord) == 56);
static_assert(std::endian::native == std::endian::little);

// Of the library's own chunks.
inline constexpr long EmptyControlListError = -7083;
inline constexpr long MissingMIDIKeyError = -7082;
inline constexpr long UnknownChunkError = -7081;
inline constexpr long DamagedChunkError = -7080;

// What the host told of itself when it asked for the instance.
struct SProcessSetup {
    long m_SampleRate = 44100;
    long m_MaxBlockSize = 0;
    short m_Inputs = 2;
    short m_Outputs = 2;
    bool m_IsAudioSuite = false;
    RTASHostCalls m_Calls{};
};

class CProcess {
public:
    CProcess();
    virtual ~CProcess();
    CProcess(const CProcess&) = delete;
    CProcess& operator=(const CProcess&) = delete;

    // --- For the plug-in to override ---

    virtual void InitControls() {}
    // Gives all controls their default values.
    virtual void Initialize();
    virtual void SetSampleRate(long rate);
    // Stores the value in the control.
    virtual void OnControlValueChanged(long control, long value) LATHE_REALTIME;
    // 0 on success, so for all below.
    virtual long GetDelaySamples(long* samples);
    virtual long GetChunkSize(std::uint32_t code, long* size);
    // The record comes with its code, and with the room that it has as its size. One with too
    // little room stays as it is.
    virtual long GetChunk(std::uint32_t code, SChunkRecord* record);
    // A record here and below has all the bytes that its size names. The library has nothing to do
    // with a chunk that the plug-in added, and calls it equal.
    virtual long SetChunk(std::uint32_t code, const SChunkRecord* record);
    virtual long CompareChunk(const SChunkRecord* record, char* isEqual);
    // The table belongs to the process; null for a selector that it doesn't know.
    virtual const void* QueryTable(std::uint32_t selector, long* size);
    // An operation of the plug-in's own. False, with a line about why, when it failed.
    virtual bool PluginCommand(const char* name, const char* argument, std::string& result);

    // --- For the plug-in to call ---

    // The library owns the control; numbers are given in order of adding, from 1.
    void AddControl(std::unique_ptr<CPluginControl> control);
    void SetMasterBypassControl(long control);
    void AddSpecialControl(long control);
    void AddChunk(std::uint32_t code, const char* name, long priority);
    // The host hears of it and answers at once. Numbers that aren't there are ignored, so below.
    void SetControlValue(long control, long value) LATHE_REALTIME;
    // The host doesn't hear of it.
    void UpdateControlValue(long control, long value) LATHE_REALTIME;
    void TouchControl(long control) LATHE_REALTIME;
    void ReleaseControl(long control) LATHE_REALTIME;
    // State other than the controls has moved. Any thread.
    void CountChange() LATHE_REALTIME;

    long GetSampleRate() const LATHE_REALTIME { return m_Setup.m_SampleRate; }
    long GetMaximumBlockSize() const LATHE_REALTIME { return m_Setup.m_MaxBlockSize; }
    short GetNumInputs() const LATHE_REALTIME { return m_Setup.m_Inputs; }
    short GetNumOutputs() const LATHE_REALTIME { return m_Setup.m_Outputs; }
    bool IsAudioSuite() const { return m_Setup.m_IsAudioSuite; }
    long GetControlCount() const { return static_cast<long>(m_Controls.size()); }

    // --- The library's side ---

    void SetUp(const SProcessSetup& setup) { m_Setup = setup; }
    // Null for a number that isn't there.
    CPluginControl* GetControl(long control) const LATHE_REALTIME;
    bool IsMasterBypass(long control) const { return control == m_MasterBypass; }
    bool IsSpecialControl(long control) const;
    // In order of adding, the library's own first; 0 behind the last.
    std::uint32_t GetChunkCode(long index) const;
    long GetChangeCount() const { return m_ChangeCount.load(std::memory_order_relaxed); }

private:
    struct SChunkEntry {
        std::uint32_t m_Code;
        std::string m_Name;
        long m_Priority;
    };

    bool HasChunk(std::uint32_t code) const;
    // The data of a chunk of the library's own.
    long MakeChunkData(std::uint32_t code, std::string& data) const;
    long SetControlsState(std::string_view data);
    long SetMIDIIdentities(std::string_view data);

    SProcessSetup m_Setup;
    std::vector<std::unique_ptr<CPluginControl>> m_Controls;
    std::set<long> m_SpecialControls;
    std::vector<SChunkEntry> m_Chunks;
    long m_MasterBypass = 0;
    std::atomic<long> m_ChangeCount{0};
    // In the order of their names.
    std::array<std::int32_t, 3> m_MIDIIdentities{};
};
