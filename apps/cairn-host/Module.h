// The plug-in's module as a host holds it: a shared object with four entry points, loaded and
// started.
#pragma once

#include "cairn-host/Result.h"

#include <cstdint>
#include <string>

namespace CairnHost {

// The path of the module that comes with the program: beside it when both are installed, in the
// folder "module" of the tree when they were just built. The first of these when it is nowhere.
std::string FindModule();

// "mrws" of 0x6D727773; what can't be printed becomes '?'.
std::string CodeToText(std::uint32_t code);

class CModule {
public:
    CModule() = default;
    ~CModule();
    CModule(const CModule&) = delete;
    CModule& operator=(const CModule&) = delete;

    // Loads and starts it, once. An empty path is that of FindModule.
    CStatus Load(const std::string& path);
    const std::string& GetPath() const { return m_Path; }

    // One of the operations of the C border; what it returns.
    std::int32_t Call(std::int32_t operation, void* argument) const {
        return m_Dispatcher(m_Version, operation, argument);
    }
    // The same, with anything but success as a fault that tells what was tried.
    CStatus Do(std::int32_t operation, void* argument, const char* what) const;

private:
    CStatus FindEntryPoints();
    CStatus Start();
    SFault Refuse(const std::string& why) const { return SFault{m_Path + ": " + why}; }

    std::string m_Path;
    void* m_Handle = nullptr;
    std::int32_t m_Version = 0;
    std::int32_t (*m_New)(void* bundle) = nullptr;
    std::int32_t (*m_Close)() = nullptr;
    std::int32_t (*m_Dispatcher)(std::int32_t version, std::int32_t operation,
                                 void* argument) = nullptr;
    bool m_Started = false;
};

} // namespace CairnHost
