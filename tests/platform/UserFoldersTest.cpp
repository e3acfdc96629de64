// The user's folders follow the environment and the desktop's file, and folders are made level by
// level or not at all.
#include "platform/UserFolders.h"

#include "platform/TemporaryHome.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Lathe::System {

namespace {

TEST(UserFolders, FollowTheEnvironment) {
    struct SCase {
        const char* m_Home;
        std::optional<std::string> m_Config;
        std::optional<std::string> m_DocumentsVariable;
        const char* m_Preferences;
        const char* m_Documents;
    };
    const SCase cases[] = {
        {"/h", {}, {}, "/h/.config", "/h/Documents"},
        {"/h/", "", "", "/h/.config", "/h/Documents"},
        {"/", {}, {}, "/.config", "/Documents"},
        {"/h", "/c//", "/d/e/", "/c", "/d/e"},
        {"/h", "relative", "./relative", "/h/.config", "/h/Documents"},
    };
    const CTemporaryHome temporary;
    for (const SCase& c : cases) {
        const CEnvironmentVariable home("HOME", c.m_Home);
        const CEnvironmentVariable config("XDG_CONFIG_HOME", c.m_Config);
        const CEnvironmentVariable documents("XDG_DOCUMENTS_DIR", c.m_DocumentsVariable);
        EXPECT_EQ(GetUserPreferencesFolder(), c.m_Preferences);
        EXPECT_EQ(GetUserDocumentsFolder(), c.m_Documents);
    }
}

TEST(UserFolders, AreThoseOfTheUserDatabaseWithoutAHome) {
    const CTemporaryHome temporary;
    const passwd* user = getpwuid(getuid());
    const std::string base = user && *user->pw_dir == '/' ? user->pw_dir : "";
    const CEnvironmentVariable config("XDG_CONFIG_HOME", {});
    for (const std::optional<std::string>& value : {std::optional<std::string>(), {"relative"}}) {
        const CEnvironmentVariable home("HOME", value);
        EXPECT_EQ(GetUserPreferencesFolder(), base.empty() ? "" : base + "/.config");
    }
}

TEST(UserFolders, DocumentsFollowTheDesktopsFile) {
    const std::pair<const char*, const char*> cases[] = {
        {"XDG_DOCUMENTS_DIR=\"$HOME/My Papers\"\n", "~/My Papers"},
        {"# XDG_DOCUMENTS_DIR=\"/no\"\n  XDG_DOCUMENTS_DIR=\"/a \\\"b\\\\c\\$\"\nOTHER=\"/no\"",
         "/a \"b\\c$"},
        {"XDG_DOCUMENTS_DIR=\"/first\"\nXDG_DOCUMENTS_DIR=\"/last/\"\n", "/last"},
        {"XDG_DOCUMENTS_DIR=\"$HOME\"\n", "~"},
        {"XDG_DOCUMENTS_DIR=\"$HOMELESS/x\"\n", "~/Documents"},
        {"XDG_DOCUMENTS_DIR=\"relative\"\nXDG_DOCUMENTS_DIR=/bare\n", "~/Documents"},
        {"XDG_DOCUMENTS_DIR=", "~/Documents"},
        {"XDG_DOCUMENTS_DIR=\"/cut\\", "/cut"},
    };
    const CTemporaryHome home;
    const CEnvironmentVariable documents("XDG_DOCUMENTS_DIR", {});
    for (const auto& [text, expected] : cases) {
        home.Write("config/user-dirs.dirs", text);
        const bool inHome = *expected == '~';
        EXPECT_EQ(GetUserDocumentsFolder(),
                  inHome ? ::getenv("HOME") + std::string(expected + 1) : std::string(expected));
    }
}

TEST(UserFolders, AreMadeLevelByLevel) {
    const CTemporaryHome home;
    const auto accessOf = [&](const char* name) {
        struct stat status {};
        EXPECT_EQ(stat(home.In(name).c_str(), &status), 0) << name;
        return status.st_mode & 0777;
    };
    const mode_t before = umask(022);
    EXPECT_TRUE(CreateFolder(home.In("open/a/b/"), EFolderAccess::Everyone));
    EXPECT_TRUE(CreateFolder(home.In("open/own/a"), EFolderAccess::Owner));
    EXPECT_TRUE(CreateFolder(home.In("open/a"), EFolderAccess::Owner));
    umask(before);
    for (const char* name : {"open", "open/a", "open/a/b"})
        EXPECT_EQ(accessOf(name), 0755u) << name;
    for (const char* name : {"open/own", "open/own/a"})
        EXPECT_EQ(accessOf(name), 0700u) << name;

    home.Write("file", "kept");
    for (const std::string& path : {home.In("file"), home.In("file/a/b"), std::string(),
                                    home.In(std::string(300, 'x')), std::string("/proc/none/a")})
        EXPECT_FALSE(CreateFolder(path, EFolderAccess::Everyone)) << path;
    EXPECT_EQ(home.Read("file"), "kept");
}

} // namespace

} // namespace Lathe::System
