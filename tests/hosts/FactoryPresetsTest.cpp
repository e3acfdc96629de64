// The factory presets beside the module: each is found, is what its file says, and is heard.
#include "hosts/TorturedInstance.h"
#include "platform/TemporaryHome.h"

#include <map>
#include <set>
#include <sstream>

namespace CairnTorture {
namespace {

namespace fs = std::filesystem;

// "p3" or "count" to the value, of the element that holds the parameters.
std::map<std::string, double> ReadParams(const std::string& document) {
    std::map<std::string, double> values;
    const std::size_t begin = document.find("<inputParams") + std::strlen("<inputParams");
    std::string text = document.substr(begin, document.find_first_of("/>", begin) - begin);
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '=' || c == '"'; }, ' ');
    std::istringstream words(text);
    std::string key, value;
    while (words >> key >> value)
        values[key] = std::stod(value);
    return values;
}

TEST(FactoryPresets, EachIsWhatItsFileSaysAndIsHeard) {
    const CTemporaryHome home;
    CairnHost::CModule module;
    ASSERT_TRUE(module.Load(CAIRN_MODULE_PATH).IsOk());
    CTorturedInstance instance(module);
    const std::string fresh = instance.GetChunk();
    const auto defaults = ReadParams(fresh);
    std::mt19937 random(1);
    instance.FillNoise(random);

    const fs::path folder = fs::path(CAIRN_MODULE_PATH).replace_extension().string() + " data";
    std::set<std::string> files, names;
    for (const auto& entry : fs::recursive_directory_iterator(folder / "Presets")) {
        if (entry.is_regular_file())
            files.insert(fs::relative(entry.path(), folder / "Presets").string());
    }
    EXPECT_GE(files.size(), 12u);

    std::istringstream list(instance.Command("list-presets"));
    for (std::string line; std::getline(list, line);) {
        SCOPED_TRACE(line);
        std::istringstream fields(line);
        std::string index, side, place, name;
        for (std::string* field : {&index, &side, &place, &name})
            std::getline(fields, *field, '\t');
        EXPECT_EQ(side, "factory");
        EXPECT_TRUE(names.insert(name).second) << "two presets have this name";
        ASSERT_EQ(files.erase(place + "/" + name + ".preset"), 1u);

        // From its file by another road than the list, then from the list.
        const std::string path = (folder / "Presets" / place / (name + ".preset")).string();
        instance.Command("load-preset", path);
        EXPECT_EQ(instance.Command("current-preset"), name);
        ASSERT_EQ(instance.SetChunk(fresh), RTAS_OK);
        instance.Command("apply-preset", index);
        EXPECT_EQ(instance.Command("current-preset"), name);

        std::ifstream file(path);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        auto expected = ReadParams(text);
        for (const auto& [key, value] : expected)
            EXPECT_TRUE(key == "count" || value != defaults.at(key)) << key << " is the default";
        expected.insert(defaults.begin(), defaults.end());
        EXPECT_EQ(ReadParams(instance.GetChunk()), expected);

        for (int block = 0; block < 4; ++block)
            ASSERT_EQ(instance.Render(4096), RTAS_OK);
        EXPECT_GT(instance.GetDistance(4096), 0.01f);
        // With noise at full scale still below what a fader brings back.
        EXPECT_LT(instance.GetPeak(4096), 4.0f);
    }
    EXPECT_TRUE(files.empty()) << *files.begin() << " isn't listed";
}

} // namespace
} // namespace CairnTorture
