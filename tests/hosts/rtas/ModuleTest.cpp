// Proves that the module shows its four entry points and nothing else, runs from them, and leaves
// no trace when it is unloaded.
#include "platform/TemporaryHome.h"
#include "platform/rtas/Dispatcher.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <stdio.h>

#include <filesystem>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <thread>

namespace {

namespace fs = std::filesystem;

int CountThreads() {
    return static_cast<int>(std::distance(fs::directory_iterator("/proc/self/task"), {}));
}

template <class TFunction>
TFunction* Find(void* module, const char* name) {
    return reinterpret_cast<TFunction*>(dlsym(module, name));
}

} // namespace

TEST(ModuleTest, ExportsItsEntryPointsAlone) {
    const std::unique_ptr<FILE, int (*)(FILE*)> names(
        popen("nm -D --defined-only --format=posix '" TEST_MODULE_PATH "'", "r"), pclose);
    std::set<std::string> found;
    char line[4096];
    while (fgets(line, sizeof line, names.get()))
        found.insert(std::string(line).substr(0, std::string(line).find(' ')));
    EXPECT_EQ(found, (std::set<std::string>{"CDSPDoHostCommand", "CloseMachOPlugIn", "Dispatcher",
                                            "NewMachOPlugIn"}));
    EXPECT_TRUE(
        fs::is_directory(fs::path(TEST_MODULE_PATH).replace_extension() += " data/Presets"));
}

TEST(ModuleTest, RunsAndGoesAsOftenAsItComes) {
    const CTemporaryHome home;
    std::thread([] {}).join(); // A sanitizer starts a thread of its own beside the first.
    const int threads = CountThreads();
    for (int round = 0; round < 3; ++round) {
        void* const module = dlopen(TEST_MODULE_PATH, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(module, nullptr) << dlerror();
        const auto dispatch = Find<decltype(Dispatcher)>(module, "Dispatcher");
        const auto run = [dispatch](int operation, auto& call) {
            call.size = sizeof call;
            return dispatch(RTAS_DISPATCHER_VERSION, operation, &call);
        };
        ASSERT_EQ(Find<decltype(NewMachOPlugIn)>(module, "NewMachOPlugIn")(nullptr), 0);
        RTASNewProcess made{};
        made.sampleRate = 48000;
        made.maxBlockSize = 64;
        made.inputs = made.outputs = 2;
        ASSERT_EQ(run(RTAS_NEW_PROCESS, made), RTAS_OK);
        EXPECT_GT(CountThreads(), threads);

        RTASProcessCall gone{};
        gone.process = made.process;
        EXPECT_EQ(run(RTAS_DELETE_PROCESS, gone), RTAS_OK);
        EXPECT_EQ(Find<decltype(CloseMachOPlugIn)>(module, "CloseMachOPlugIn")(), 0);
        EXPECT_EQ(dlclose(module), 0);
        EXPECT_EQ(dlopen(TEST_MODULE_PATH, RTLD_NOW | RTLD_NOLOAD), nullptr);
        // One that has been joined may still be on its way out; one that stays hangs the test.
        while (CountThreads() > threads)
            std::this_thread::yield();
    }
}
