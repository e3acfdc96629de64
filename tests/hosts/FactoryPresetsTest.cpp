// The factory presets beside the module: each is found, is what its file says, and is heard.
#include "hosts/TorturedInstance.h"
#include "platform/TemporaryHome.h"

#include <cstring>
#include <map>
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
    const auto defaults = ReadParams(instance.GetChunk());
    std::mt19937 random(1);
    instance.FillNoise(random);

    std::map<std::string, fs::path> files;
    const std::string data = fs::path(CAIRN_MODULE_PATH).replace_extension().string() + " data";
    for (const auto& entry : fs::recursive_directory_iterator(data + "/Presets"))
        EXPECT_TRUE(!entry.is_regular_file() ||
                    files.emplace(entry.path().stem(), entry.path()).second)
            << "two presets have the name of " << entry.path();
    EXPECT_GE(files.size(), 12u);
    const std::string list = instance.Command("list-presets");
    EXPECT_EQ(std::size_t(std::count(list.begin(), list.end(), '\n')), files.size());

    for (int index = 0; !files.empty(); ++index) {
        instance.Command("apply-preset", std::to_string(index));
        const std::string name = instance.Command("current-preset");
        SCOPED_TRACE(name);
        const auto found = files.extract(name);
        ASSERT_FALSE(found.empty()) << "no file has this name";
        const std::string folder = found.mapped().parent_path().filename();
        EXPECT_NE(list.find("\tfactory\t" + folder + "\t" + name + "\t"), std::string::npos);

        std::ifstream file(found.mapped());
        auto expected = ReadParams({std::istreambuf_iterator<char>(file), {}});
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
}

} // namespace
} // namespace CairnTorture
