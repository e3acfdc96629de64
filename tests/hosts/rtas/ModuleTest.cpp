// Proves that the module shows its four entry points and nothing else, and has its data beside it.
#include <gtest/gtest.h>

#include <stdio.h>

#include <filesystem>
#include <memory>

TEST(ModuleTest, ExportsItsEntryPointsAlone) {
    const std::unique_ptr<FILE, int (*)(FILE*)> names(
        popen("nm -D --defined-only --format=posix '" TEST_MODULE_PATH "' | cut -d ' ' -f 1", "r"),
        pclose);
    std::string found(4096, '\0');
    found.resize(fread(found.data(), 1, found.size(), names.get()));
    EXPECT_EQ(found, "CDSPDoHostCommand\nCloseMachOPlugIn\nDispatcher\nNewMachOPlugIn\n");
    EXPECT_TRUE(std::filesystem::is_directory(
        std::filesystem::path(TEST_MODULE_PATH).replace_extension() += " data/Presets"));
}
