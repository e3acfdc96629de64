// The XML documents: their written form, which files depend on, and what damaged or hostile texts
// and names do.
#include "serialization/Streams.h"

#include "core/Fixtures.h"
#include "serialization/XmlText.h"

#include <sstream>

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

// Of the form between, elements without types, a document written by hand tells enough.
TEST(XmlDataObject, WritesTheKnownForms) {
    const std::pair<EXmlFormat, const char*> bodies[] = {
        {XmlAttributes, R"(<Root b="1" i="-3" f="0.5" d="0.10000000000000000555")"
                        R"( s='x&lt;&quot;y&quot;&amp;&#x0A;' raw="Zm9vYg==">
    <o v="1" />)"},
        {XmlTyped, R"(<Root>
    <BOOL name="b">1</BOOL>
    <INTEGER name="i">-3</INTEGER>
    <FLOAT name="f">0.5</FLOAT>
    <DOUBLE name="d">0.10000000000000000555</DOUBLE>
    <STRING name="s">x&lt;&quot;y&quot;&amp;&#x0A;</STRING>
    <DATA name="raw">Zm9vYg==</DATA>
    <OBJECT name="o">
        <INTEGER name="v">1</INTEGER>
    </OBJECT>)"}};
    for (const auto& [format, body] : bodies) {
        CXmlDataObject document("Root", format);
        WriteOneOfEach(document);
        EXPECT_EQ(GetText(document),
                  "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"s + body + "\n</Root>\n");
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

TEST(XmlDataObject, RefusesTextsThatAreNoDocuments) {
    CXmlDataObject document("Root");
    const auto check = [&](const std::string& text) {
        ASSERT_TRUE(Parse(document, "<Root v='1'><o/></Root>"));
        EXPECT_FALSE(Parse(document, text)) << text.substr(0, 80);
        CheckUsableAndEmpty(document);
    };
    std::istringstream lines(
        "\nno marks\n<\n<a\n<a>\n<a></b>\n</a>\n<a/><b/>\n<a/>tail\n<1/>\n<a b/>\n<a b=c/>\n"
        "<a b='c/>\n<a b='<'/>\n<a b='1' b='2'/>\n<a b='&#x'/>\n<a>&#x41</a>\n<a><![CDATA[</a>\n"
        "<a><!-- </a>\n<?xml\n<?xml?>\n<a><?xml version='></a>'?></a>\n<a b='\xE9/>\n<a v='1'\0/>"s);
    for (std::string line; std::getline(lines, line);)
        check(line);
    // What nests too deep, what makes every search slow, then what takes much memory.
    const int many = 1'000'000;
    for (const char* opening : {"<a>", "<a><?xml v='></a>'?>", "<a b='</a>'>"})
        check(Repeat(opening, many));
    for (const char* child : {"<b/>", "<!---->", "<![CDATA[]]>"})
        check("<a>" + Repeat(child, 20'000) + "</a>");
    check("<a" + Repeat(" b='1'", many) + "/>");
    check(Repeat("<?x?>", many) + "<a/>");
    const std::string pairs = Repeat("<b><c d='1'/></b>", 100);
    check("<r>" + Repeat("<a>" + pairs + "</a>", many / 300 + 1) + "</r>");
    check("<a b='" + std::string(MaxXmlSize, 'x') + "'/>");
    const auto nest = [](int depth) { return Repeat("<a>", depth) + Repeat("</a>", depth); };
    check(nest(MaxXmlDepth + 1));
    EXPECT_FALSE(document.Parse(nullptr, 5) || document.Parse("<a/>", -4));
    EXPECT_TRUE(document.Parse("<a/>junk", 4) && Parse(document, nest(MaxXmlDepth)) &&
                Parse(document, "<a b='" + std::string(20 << 20, 'x') + "'/>"));
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
        EXPECT_TRUE(document.WriteObject("again", CIntObject(6)) &&
                    document.ReadObject("again", object) && object.m_Value == 6)
            << damaged;
    }
}

TEST(XmlDataObject, RefusesNamesThatWouldSpoilTheDocument) {
    for (const char* name : {"", "two words", "a=b", "1st", "a<b", "-", "a\"b", "_ok-1.x:y"})
        for (int format = 0; format < 3; ++format) {
            const bool taken = format == XmlTyped || *name == '_';
            CXmlDataObject document("Root", format);
            EXPECT_EQ(WriteValue(document, name, 1), taken) << name;
            EXPECT_EQ(document.WriteObject(name, CIntObject(2)), taken) << name;
            ASSERT_TRUE(Parse(document, GetText(document)));
            EXPECT_EQ(document.HasValue(name), taken) << name;
        }
    CXmlBaseDataObject nothing(nullptr, XmlAttributes);
    CIntObject object;
    nothing.RemoveValue("v");
    nothing.Clear();
    EXPECT_FALSE(WriteValue(nothing, "v", 1) || nothing.WriteObject("v", object) ||
                 nothing.ReadObject("v", object) || nothing.HasValue("v"));
    EXPECT_EQ(ReadText(nothing, "v"), "(missing)");
}

} // namespace Lathe::Serialization::Tests
