// The user's folders follow the environment and the desktop's file, folders are made level by level
// or not at all, and code finds the file that it was loaded from.
#include "platform/ModulePath.h"
#include "platform/TemporaryHome.h"
#include "platform/UserFolders.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Lathe::System {
namespace {

namespace fs = std::filesystem;

TEST(UserFolders, FollowEnvironmentAndFile) {
    const CTemporaryHome temporary;
    const passwd* user = getpwuid(getuid());
    const std::string userHome = user ? user->pw_dir : "";
    const std::string config = temporary.In("config"), name = "XDG_DOCUMENTS_DIR=";
    const struct {
        std::optional<std::string> m_Home, m_Config, m_Variable;
        std::string m_File, m_Preferences, m_Documents;
    } cases[] = {
        {"/h//", {}, "", "", "/h/.config", "/h/Documents"},
        {"/", "relative", "./relative", "", "/.config", "/Documents"},
        {"/h", "/c//", "/d/e/", "", "/c", "/d/e"},
        {{}, {}, "/d", "", userHome.empty() ? "" : userHome + "/.config", "/d"},
        {"/h", config, {}, name + "\"$HOME/My Papers\"\n", config, "/h/My Papers"},
        {"/h", config, {}, "#" + name + "\"/no\"\n " + name + "\"/\\\"b\\$\"", config, "/\"b$"},
        {"/h", config, {}, name + "\"/first\"\n" + name + "\"/last/\"", config, "/last"},
        {"/h", config, {}, name + "\"$HOMES\"\n" + name + "/b\n" + name, config, "/h/Documents"},
        {"/h", config, {}, name + "\"/cut\\", config, "/cut"},
    };
    for (const auto& c : cases) {
        temporary.Write("config/user-dirs.dirs", c.m_File);
        SetVariable("HOME", c.m_Home);
        SetVariable("XDG_CONFIG_HOME", c.m_Config);
        SetVariable("XDG_DOCUMENTS_DIR", c.m_Variable);
        EXPECT_EQ(GetUserPreferencesFolder(), c.m_Preferences);
        EXPECT_EQ(GetUserDocumentsFolder(), c.m_Documents) << c.m_File;
    }
}

TEST(UserFolders, AreMadeLevelByLevel) {
    const CTemporaryHome home;
    const mode_t before = umask(022);
    EXPECT_TRUE(CreateFolder(home.In("open/a/"), EFolderAccess::Everyone));
    EXPECT_TRUE(CreateFolder(home.In("open/own/a"), EFolderAccess::Owner));
    umask(before);
    for (const auto& [name, access] : {std::pair("open", 0755), {"open/own", 0700}})
        for (const std::string& path : {home.In(name), home.In(name) + "/a"})
            EXPECT_EQ(fs::status(path).permissions(), fs::perms(access)) << path;
    home.Write("file");
    for (const std::string& path : {home.In("file"), home.In("file/a/b"), std::string()})
        EXPECT_FALSE(CreateFolder(path, EFolderAccess::Everyone)) << path;
}

TEST(ModulePath, IsTheFileBehindTheLinkOrElseTheExecutable) {
    const CTemporaryHome home;
    Dl_info math; // A library of the system, of which a copy is a module of its own.
    ASSERT_TRUE(dladdr(dlsym(RTLD_DEFAULT, "cos"), &math));
    fs::copy_file(fs::canonical(math.dli_fname), home.In("module.so"));
    fs::create_symlink("module.so", home.In("link.so"));
    const fs::path before = fs::current_path();
    fs::current_path(home.In(""));
    void* const loaded = dlopen("./link.so", RTLD_NOW);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(GetModulePath(dlsym(loaded, "cos")), home.In("module.so"));
    dlclose(loaded);
    EXPECT_EQ(GetModulePath(nullptr), fs::read_symlink("/proc/self/exe"));
    fs::current_path(before);
}

} // namespace
} // namespace Lathe::System
