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

TEST(UserFolders, FollowTheEnvironment) {
    const passwd* user = getpwuid(getuid());
    const std::string userHome = user ? user->pw_dir : "";
    using Text = std::optional<std::string>;
    const struct {
        Text m_Home, m_Config, m_DocumentsVariable;
        std::string m_Preferences, m_Documents;
    } cases[] = {
        {"/h/", {}, "", "/h/.config", "/h/Documents"},
        {"/", "", {}, "/.config", "/Documents"},
        {"/h", "/c//", "/d/e/", "/c", "/d/e"},
        {"/h", "relative", "./relative", "/h/.config", "/h/Documents"},
        {{}, {}, "/d", userHome.empty() ? "" : userHome + "/.config", "/d"},
    };
    const CTemporaryHome temporary;
    for (const auto& c : cases) {
        const CEnvironmentVariable home("HOME", c.m_Home);
        const CEnvironmentVariable config("XDG_CONFIG_HOME", c.m_Config);
        const CEnvironmentVariable documents("XDG_DOCUMENTS_DIR", c.m_DocumentsVariable);
        EXPECT_EQ(GetUserPreferencesFolder(), c.m_Preferences);
        EXPECT_EQ(GetUserDocumentsFolder(), c.m_Documents);
    }
}

TEST(UserFolders, DocumentsFollowTheDesktopsFile) {
    const CTemporaryHome home;
    const std::string name = "XDG_DOCUMENTS_DIR=";
    const std::pair<std::string, std::string> cases[] = {
        {name + "\"$HOME/My Papers\"\n", home.In("My Papers")},
        {"#" + name + "\"/no\"\n " + name + "\"/a \\\"b\\\\\\$\"\nX=\"/no\"", "/a \"b\\$"},
        {name + "\"/first\"\n" + name + "\"/last/\"\n", "/last"},
        {name + "\"$HOMELESS/x\"\n" + name + "/bare\n" + name, home.In("Documents")},
        {name + "\"/cut\\", "/cut"},
    };
    const CEnvironmentVariable documents("XDG_DOCUMENTS_DIR", {});
    for (const auto& [text, expected] : cases) {
        home.Write("config/user-dirs.dirs", text);
        EXPECT_EQ(GetUserDocumentsFolder(), expected) << text;
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
