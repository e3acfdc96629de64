// The XML documents: their written form, which files depend on, and what damaged or hostile texts
// and names do.
#include "serialization/Streams.h"

#include "core/Fixtures.h"
#include "serialization/XmlText.h"

#include <filesystem>
#include <random>
#include <sstream>
#include <vector>

namespace Lathe::Serialization::Tests {

namespace {

using namespace std::string_literals;

void WriteOneOfEach(IWriteDataStream& output) {
    WriteValue(output, "b", true);
    WriteValue(output, "i", -3);
    WriteValue(output, "f", 0.5f);
    WriteValue(output, "d", 0.1);
    WriteValue(output, "s", "x<\"y\"&\n");
    output.WriteData("raw", "foob", 4);
    output.WriteObject("o", CIntObject(1));
}

// Without the line breaks and the indentation.
std::string Flatten(const std::string& text) {
    std::string flat;
    for (const char c : text)
        if (c != '\n' && (c != ' ' || !flat.ends_with('>')))
            flat += c;
    return flat;
}

std::string Repeat(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

void CheckUsableAndEmpty(CXmlDataObject& document) {
    EXPECT_FALSE(document.HasValue("v") || document.HasValue("o"));
    EXPECT_TRUE(WriteValue(document, "v", 4));
    EXPECT_NE(GetText(document).find("<Root v=\"4\" />"), std::string::npos);
}

} // namespace

TEST(XmlDataObject, WritesTheKnownFormOfEachFormat) {
    const char* const bodies[] = {
        R"(<Root b="1" i="-3" f="0.5" d="0.10000000000000000555" s='x&lt;&quot;y&quot;&amp;&#x0A;')"
        R"( raw="Zm9vYg=="><o v="1" /></Root>)",
        "<Root><b>1</b><i>-3</i><f>0.5</f><d>0.10000000000000000555</d>"
        "<s>x&lt;&quot;y&quot;&amp;&#x0A;</s><raw>Zm9vYg==</raw><o><v>1</v></o></Root>",
        R"(<Root><BOOL name="b">1</BOOL><INTEGER name="i">-3</INTEGER><FLOAT name="f">0.5</FLOAT>)"
        R"(<DOUBLE name="d">0.10000000000000000555</DOUBLE>)"
        R"(<STRING name="s">x&lt;&quot;y&quot;&amp;&#x0A;</STRING><DATA name="raw">Zm9vYg==</DATA>)"
        R"(<OBJECT name="o"><INTEGER name="v">1</INTEGER></OBJECT></Root>)"};
    for (int format = 0; format < 3; ++format) {
        CXmlDataObject document("Root", format);
        WriteOneOfEach(document);
        EXPECT_EQ(Flatten(GetText(document)),
                  "<?xml version=\"1.0\" encoding=\"utf-8\" ?>"s + bodies[format]);
    }
}

TEST(XmlDataObject, ReadsDocumentsWrittenByHand) {
    CXmlDataObject document("Root");
    ASSERT_TRUE(Parse(document,
                      "\xEF\xBB\xBF\r\n<!DOCTYPE x>\n<!-- > </a> < --><Other\n i = '12x' e=''"
                      " v='&#65;&#x42;&apos;>'><!--c--><v v='1'/><v v='2'></v>\n</Other>\n"));
    EXPECT_EQ(ReadInt(document, "i"), 12);
    EXPECT_EQ(ReadInt(document, "e", 5), 5); // There, and leaves what the stream leaves.
    // The attribute, beside elements of that name.
    EXPECT_EQ(ReadText(document, "e") + ReadText(document, "v"), "AB'>");
    CIntObject object;
    EXPECT_TRUE(document.ReadObject("v", object) && object.m_Value == 1);
    EXPECT_TRUE(document.WriteObject("v", CIntObject(3))); // In place of them all.
    EXPECT_TRUE(document.ReadObject("v", object) && object.m_Value == 3);
    EXPECT_TRUE(WriteValue(document, "v", "a&#x42;\"&#x&#xe9;")); // References stay as they are.
    EXPECT_NE(GetText(document).find("'a&#x42;&quot;&amp;#x&#xe9;'"), std::string::npos);
    EXPECT_EQ(GetText(document).find("\xEF\xBB\xBF"), std::string::npos);

    CXmlDataObject elements("Root", XmlElements);
    ASSERT_TRUE(Parse(elements, "<r><a/><b> 7\n</b><c><!-- c -->t<![CDATA[u]]></c><d>!</d></r>"));
    EXPECT_EQ(ReadText(elements, "a") + ReadText(elements, "b") + ReadText(elements, "c"), " 7\nt");
    char* data = nullptr;
    int size = 7;
    EXPECT_FALSE(elements.ReadData("d", &data, &size) || data || size != 7);
}

TEST(XmlDataObject, SavesAndLoadsFiles) {
    const std::string path = testing::TempDir() + std::to_string(std::random_device{}());
    CXmlDataObject saved("Preset"), loaded("Root");
    WriteOneOfEach(saved);
    ASSERT_TRUE(saved.Save(path.c_str()));
    EXPECT_TRUE(loaded.Load(path.c_str()) && GetText(loaded) == GetText(saved));
    std::filesystem::remove(path);
    for (const char* bad : {path.c_str(), "/", "", "/dev/null", "/dev/zero"}) {
        EXPECT_FALSE(loaded.Load(bad));
        CheckUsableAndEmpty(loaded);
    }
    EXPECT_FALSE(saved.Save("/missing folder/x.preset") || saved.Save(nullptr));
}

TEST(XmlDataObject, RefusesTextsThatAreNoDocuments) {
    std::istringstream lines(
        "\nno marks\n<\n<a\n<a>\n<a></b>\n</a>\n<a/><b/>\n<a/>tail\n<1/>\n<a b/>\n<a b=c/>\n"
        "<a b='c/>\n<a b='<'/>\n<a b='1' b='2'/>\n<a b='&#x'/>\n<a>&#x41</a>\n<a><![CDATA[</a>\n"
        "<a><!-- </a>\n<?xml\n<?xml?>\n<a><?xml version='></a>'?></a>\n<a b='\xE9/>\n<a v='1'\0/>"s);
    std::vector<std::string> texts;
    for (std::string line; std::getline(lines, line);)
        texts.push_back(line);
    const auto nest = [](int depth) { return Repeat("<a>", depth) + Repeat("</a>", depth); };
    const int many = 1'000'000;
    for (const char* opening : {"<a>", "<a><?xml v='></a>'?>", "<a b='</a>'>"})
        texts.push_back(Repeat(opening, many));
    // What makes every search slow, then what takes much memory.
    for (const char* child : {"<b/>", "<!---->", "<![CDATA[]]>"})
        texts.push_back("<a>" + Repeat(child, many) + "</a>");
    const std::string pairs = Repeat("<b><c d='1'/></b>", 100);
    texts.insert(texts.end(),
                 {"<a" + Repeat(" b='1'", many) + "/>", Repeat("<?x?>", many) + "<a/>",
                  "<r>" + Repeat("<a>" + pairs + "</a>", many / 300 + 1) + "</r>",
                  "<a b='" + std::string(MaxXmlSize, 'x') + "'/>", nest(MaxXmlDepth + 1)});
    CXmlDataObject document("Root");
    for (const std::string& text : texts) {
        ASSERT_TRUE(Parse(document, "<Root v='1'><o/></Root>"));
        EXPECT_FALSE(Parse(document, text)) << text.substr(0, 80);
        CheckUsableAndEmpty(document);
    }
    EXPECT_FALSE(document.Parse(nullptr, 5) || document.Parse("<a/>", -4));
    EXPECT_TRUE(document.Parse("<a/>junk", 4) && Parse(document, nest(MaxXmlDepth)));
    EXPECT_TRUE(Parse(document, "<a b='" + std::string(20 << 20, 'x') + "'/>"));
}

// Damage of every kind at every place: each text is either refused or gives a usable document.
TEST(XmlDataObject, SurvivesDamagedTexts) {
    CXmlDataObject source("Root", XmlTyped);
    WriteOneOfEach(source);
    const std::string whole = GetText(source);
    for (std::size_t length = 0; length < whole.size() - 7; ++length)
        EXPECT_FALSE(Parse(source, whole.substr(0, length))) << length;
    SCOPED_TRACE("seed " + std::to_string(GetSeed()));
    std::mt19937 random(GetSeed());
    const std::string marks = "<>/='\"&;#x!-?[]\xE9\xEF\xBB\0 a1"s;
    for (int i = 0; i < 5000; ++i) {
        std::string damaged = whole;
        for (unsigned k = random() % 4 + 1; k > 0; --k)
            damaged[random() % damaged.size()] = marks[random() % marks.size()];
        CXmlDataObject document("Root", static_cast<int>(random() % 3));
        Parse(document, damaged);
        CIntObject object;
        EXPECT_TRUE(document.WriteObject("again", CIntObject(6)));
        EXPECT_TRUE(document.ReadObject("again", object) && object.m_Value == 6) << damaged;
    }
}

TEST(XmlDataObject, RefusesNamesThatWouldSpoilTheDocument) {
    for (const char* name : {"", "two words", "a=b", "1st", "a<b", "-", "a\"b"})
        for (int format = 0; format < 3; ++format) {
            CXmlDataObject document("Root", format);
            EXPECT_EQ(WriteValue(document, name, 1), format == XmlTyped) << name;
            EXPECT_EQ(document.WriteObject(name, CIntObject(2)), format == XmlTyped) << name;
            EXPECT_TRUE(WriteValue(document, "_ok-1.x:y", 1));
            ASSERT_TRUE(Parse(document, GetText(document)));
            EXPECT_EQ(document.HasValue(name), format == XmlTyped) << name;
            EXPECT_EQ(ReadInt(document, "_ok-1.x:y"), 1);
        }
    CXmlBaseDataObject nothing(nullptr, XmlAttributes);
    CIntObject object;
    EXPECT_FALSE(WriteValue(nothing, "v", 1) || nothing.WriteObject("v", object));
    nothing.RemoveValue("v");
    nothing.Clear();
    EXPECT_FALSE(nothing.ReadObject("v", object) || nothing.HasValue("v"));
    EXPECT_EQ(ReadText(nothing, "v"), "(missing)");
}

} // namespace Lathe::Serialization::Tests
