#include "cairn-host/Module.h"

#include "cairn-host/Text.h"

#include "platform/rtas/Dispatcher.h"

#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <filesystem>
#include <unistd.h>

namespace CairnHost {
namespace {

namespace fs = std::filesystem;

constexpr const char* s_ModuleName = "CairnEQ4Dual.so";
// From the program's folder: installed, and as they are built.
constexpr const char* s_Folders[] = {".", "../module", "../../module"};

// The loader's reason, without the path that the message names already.
std::string GetLoaderReason(const std::string& path) {
    const char* text = ::dlerror();
    std::string reason = text ? text : "for no reason told";
    if (reason.starts_with(path + ": "))
        reason.erase(0, path.size() + 2);
    return WithoutFullStop(reason);
}

} // namespace

std::string FindModule() {
    std::error_code error;
    const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
    for (const char* level : s_Folders) {
        const fs::path path = (folder / level / s_ModuleName).lexically_normal();
        if (fs::exists(path, error))
            return path.string();
    }
    return (folder / s_ModuleName).string();
}

std::string CodeToText(std::uint32_t code) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const char letter = static_cast<char>(code >> shift & 0xff);
        text += letter >= ' ' && letter <= '~' ? letter : '?';
    }
    return text;
}

CModule::~CModule() {
    if (m_Started)
        m_Close();
    if (m_Handle)
        ::dlclose(m_Handle);
}

CStatus CModule::Load(const std::string& path) {
    m_Path = path.empty() ? FindModule() : path;
    m_Version = RTAS_DISPATCHER_VERSION;
    std::error_code ignored;
    if (fs::is_directory(m_Path, ignored))
        return Refuse("is a folder: expected the plug-in's module");
    if (::access(m_Path.c_str(), R_OK) != 0)
        return Refuse(std::string("the plug-in's module can't be read: ") + std::strerror(errno));
    // A name without a slash would be looked for in the system's folders.
    const std::string absolute = fs::absolute(m_Path, ignored).string();
    m_Handle = ::dlopen(absolute.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_Handle)
        return Refuse("can't be loaded as a module: " + GetLoaderReason(absolute));
    if (CStatus status = FindEntryPoints(); !status)
        return status;
    // The module looks for its data where it lies, not where a link to it does.
    const fs::path real = fs::canonical(m_Path, ignored);
    const fs::path data = real.parent_path() / (real.stem().string() + " data");
    if (!fs::is_directory(data, ignored))
        return Refuse("its data folder isn't there: expected " + data.string());
    return Start();
}

CStatus CModule::FindEntryPoints() {
    const auto find = [this](const char* name, auto& function) {
        function =
            reinterpret_cast<std::remove_reference_t<decltype(function)>>(::dlsym(m_Handle, name));
        return function != nullptr;
    };
    std::int32_t (*hostCommand)(std::int32_t command, void* argument) = nullptr;
    const char* missing = !find("NewMachOPlugIn", m_New)            ? "NewMachOPlugIn"
                          : !find("CloseMachOPlugIn", m_Close)      ? "CloseMachOPlugIn"
                          : !find("Dispatcher", m_Dispatcher)       ? "Dispatcher"
                          : !find("CDSPDoHostCommand", hostCommand) ? "CDSPDoHostCommand"
                                                                    : nullptr;
    if (missing)
        return Refuse(std::string("is no plug-in: it has no entry point ") + missing);
    return {};
}

CStatus CModule::Start() {
    // The module needs nothing of the bundle but that there is one.
    if (const std::int32_t error = m_New(m_Handle); error != 0)
        return Refuse("can't start (" + std::to_string(error) + ")");
    m_Started = true;
    RTASGroupInfo info = {};
    info.size = sizeof info;
    if (Call(RTAS_GET_GROUP_INFO, &info) == RTAS_WRONG_VERSION)
        return Refuse("is of another version: expected " + std::to_string(m_Version));
    return Do(RTAS_GET_GROUP_INFO, &info, "telling what it is");
}

CStatus CModule::Do(std::int32_t operation, void* argument, const char* what) const {
    const std::int32_t error = Call(operation, argument);
    if (error != RTAS_OK)
        return Refuse(std::string(what) + " failed (" + std::to_string(error) + ")");
    return {};
}

} // namespace CairnHost
