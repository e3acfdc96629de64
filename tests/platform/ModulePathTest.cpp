// Code finds the file that it was loaded from, whatever name it was loaded by.
#include "platform/ModulePath.h"

#include "platform/TemporaryHome.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

namespace Lathe::System {

namespace {

TEST(ModulePath, IsTheModulesOwnOrElseTheExecutables) {
    const CTemporaryHome home;
    const std::string module = std::filesystem::canonical(TEST_MODULE_PATH);
    std::filesystem::create_symlink(module, home.In("link.so"));
    // The executable's name as it was called, and the link, are relative.
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(home.In(""));
    void* const loaded = dlopen("./link.so", RTLD_NOW);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(GetModulePath(dlsym(loaded, "InTestModule")), module);
    dlclose(loaded);
    static const int s_InExecutable = 0;
    for (const void* address : {static_cast<const void*>(&s_InExecutable), {}})
        EXPECT_EQ(GetModulePath(address), std::filesystem::read_symlink("/proc/self/exe"));
    std::filesystem::current_path(before);
}

} // namespace

} // namespace Lathe::System
