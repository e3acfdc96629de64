// One instance of the plug-in, as a host drives it.
#pragma once

#include "cairn-host/Result.h"

#include "platform/rtas/Dispatcher.h"

#include <cstdint>
#include <string>
#include <vector>

namespace CairnHost {

class CModule;

// Opened; then state, controls and commands; then blocks, with controls between them. All on one
// thread. Controls count from 1; their values span all of int32_t.
class CHostInstance {
public:
    // The module is loaded, and outlives the instance.
    explicit CHostInstance(const CModule& module) : m_Module(module) {}
    ~CHostInstance();
    CHostInstance(const CHostInstance&) = delete;
    CHostInstance& operator=(const CHostInstance&) = delete;

    // Of the module's first type. The rate in hertz, the largest block in frames.
    CStatus Open(int sampleRate, int maxBlockSize);

    int GetControlCount() const;
    RTASControlInfo GetControlInfo(int control) const;
    // Names and texts of at most so many characters.
    std::string GetControlName(int control, int length) const;
    std::string ControlToText(int control, std::int32_t value, int length) const;
    TResult<std::int32_t> TextToControl(int control, const std::string& text) const;
    CStatus SetControl(int control, std::int32_t value);

    // In frames.
    TResult<int> GetDelay() const;
    // The caller sets all but size and process.
    CStatus Process(RTASRender& block);

    // In the order in which a session stores them.
    std::vector<std::uint32_t> GetChunkCodes() const;
    // A chunk is a whole record: its header of 56 bytes, and its data.
    TResult<std::string> GetChunk(std::uint32_t code) const;
    CStatus SetChunk(std::uint32_t code, std::string record);
    // Whether the instance's state is that of the chunk, as far as the plug-in can tell.
    bool HoldsChunk(std::uint32_t code, std::string record) const;

    // What the command gives, or what the plug-in says went wrong.
    TResult<std::string> Command(const std::string& name, const std::string& argument = {});
    // The plug-in's own bytes; empty for a selector that it doesn't know.
    std::string GetTable(std::uint32_t selector) const;

private:
    // An argument of this instance.
    template <class TArgument>
    TArgument Make() const {
        TArgument argument = {};
        argument.size = sizeof argument;
        argument.process = m_Process;
        return argument;
    }
    std::string ReadText(int operation, int control, std::int32_t value, int length) const;

    const CModule& m_Module;
    RTASProcess* m_Process = nullptr;
};

} // namespace CairnHost
