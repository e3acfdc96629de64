// Code finds the file that it was loaded from, whatever name it was loaded by.
#include "platform/ModulePath.h"

#include "platform/TemporaryHome.h"

#include <dlfcn.h>

#include <memory>

namespace Lathe::System {

namespace {

struct SModuleCloser {
    void operator()(void* module) const { dlclose(module); }
};

// Empty when the module can't be loaded.
std::string GetPathOfLoadedModule(const std::string& name) {
    const std::unique_ptr<void, SModuleCloser> module(dlopen(name.c_str(), RTLD_NOW));
    if (!module)
        return {};
    using Function = const void* (*)();
    const auto function = reinterpret_cast<Function>(dlsym(module.get(), "GetOwnAddress"));
    return function ? GetModulePath(function()) : std::string();
}

TEST(ModulePath, IsTheModulesOwnWhateverItsNameWas) {
    const std::filesystem::path module = std::filesystem::canonical(TEST_MODULE_PATH);
    EXPECT_EQ(GetPathOfLoadedModule(module), module);

    const CTemporaryHome home;
    std::filesystem::create_symlink(module, home.In("link.so"));
    EXPECT_EQ(GetPathOfLoadedModule(home.In("link.so")), module);

    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(module.parent_path());
    EXPECT_EQ(GetPathOfLoadedModule("./" + module.filename().string()), module);
    std::filesystem::current_path(before);
}

TEST(ModulePath, IsTheExecutableForItsOwnCodeAndForNoCode) {
    const std::string executable = std::filesystem::read_symlink("/proc/self/exe");
    static const int s_InExecutable = 0;
    const auto onHeap = std::make_unique<int>();
    // The name that the executable was called by is relative under most runners.
    const CTemporaryHome home;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(home.In(""));
    EXPECT_EQ(GetModulePath(&s_InExecutable), executable);
    EXPECT_EQ(GetModulePath(onHeap.get()), executable);
    EXPECT_EQ(GetModulePath(nullptr), executable);
    std::filesystem::current_path(before);
}

} // namespace

} // namespace Lathe::System
