// The user's folders follow the environment and the desktop's file, and folders are made level by
// level or not at all.
#include "platform/UserFolders.h"

#include "platform/TemporaryHome.h"

#include <gtest/gtest.h>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Lathe::System {

namespace {

TEST(UserFolders, FollowEnvironmentAndFile) {
    const CTemporaryHome temporary;
    const passwd* user = getpwuid(getuid());
    const std::string userHome = user ? user->pw_dir : "";
    const std::string config = temporary.In("config");
    const std::string name = "XDG_DOCUMENTS_DIR=";
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
        const CEnvironmentVariable homeVariable("HOME", c.m_Home);
        const CEnvironmentVariable configVariable("XDG_CONFIG_HOME", c.m_Config);
        const CEnvironmentVariable documentsVariable("XDG_DOCUMENTS_DIR", c.m_Variable);
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
    using enum std::filesystem::perms;
    for (const char* name : {"open", "open/a", "open/own", "open/own/a"}) {
        const auto access = std::filesystem::status(home.In(name)).permissions();
        EXPECT_EQ((access & others_all) != none, !std::string(name).starts_with("open/own"));
        EXPECT_EQ(access & owner_all, owner_all) << name;
    }
    home.Write("file", "kept");
    for (const std::string& path : {home.In("file"), home.In("file/a/b"), std::string()})
        EXPECT_FALSE(CreateFolder(path, EFolderAccess::Everyone)) << path;
}

} // namespace

} // namespace Lathe::System
