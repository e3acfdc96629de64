// Objects in the clipboard: the names and bytes that other programs see, which data match, and what
// hostile ones do.
#include "serialization/clipboard/ObjectClipboard.h"

#include "core/runtime/ObjectsFactory.h"
#include "serialization/Streams.h"
#include "serialization/clipboard/MemClipboard.h"

namespace Lathe::Serialization::Tests {

namespace {

struct IPasted : CIntObject, virtual ITypeSerializable {
    static const char* InterfaceId() { return "{IPasted}"; }
};
struct CPasted : IPasted {
    static const char* ClassId() { return "{CPasted}"; }
    const char* GetClassId() const override { return ClassId(); }
};
const Runtime::CFactoryRegistration<CPasted, IPasted> Registration;

struct CClipboardTest : testing::Test {
    void Set(const char* format, const std::string& bytes) {
        EXPECT_TRUE(m_System.SetData(bytes.data(), static_cast<int>(bytes.size()), format));
    }
    // What an object of the value 7 becomes, after whether the paste succeeds.
    std::string Paste(const char* format, const char* category) const {
        CIntObject object(7);
        const bool pasted = m_Clipboard.Paste(object, format, category);
        return (pasted ? "pastes " : "fails ") + std::to_string(object.m_Value);
    }

    System::CMemClipboard m_System;
    CObjectClipboard m_Clipboard{m_System};
};

} // namespace

TEST_F(CClipboardTest, HoldsTheKnownNamesAndBytes) {
    CPasted typed;
    typed.m_Value = 5;
    const ISerialize& plain = typed;
    EXPECT_TRUE(m_Clipboard.Copy(plain, nullptr, "Preset_M_P_V"));
    EXPECT_TRUE(m_Clipboard.Copy(typed, nullptr, "Cat"));
    EXPECT_TRUE(m_Clipboard.Copy(typed, "Format", nullptr));
    const std::string head = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n<ClipboardData";
    const std::string tail = ">\n    <Data v=\"5\" />\n</ClipboardData>\n",
                      type = " DataType=\"{CPasted}\"";
    const std::string zero(1, '\0');
    const std::pair<const char*, std::string> expected[] = {
        {"_MarrowSound_-[Preset_M_P_V]-", head + tail + zero},
        {"_MarrowSound_-[Cat]-{CPasted}", head + type + tail + zero},
        {"_MarrowSound_-[]-Format", head + type + tail + zero}};
    auto names = m_System.GetFormats();
    for (const auto& [name, bytes] : expected) {
        ASSERT_FALSE(names->IsDone());
        EXPECT_STREQ(names->GetValue(), name);
        EXPECT_EQ(m_System.GetData(name), bytes);
        names->Next();
    }
    EXPECT_TRUE(names->IsDone());
    EXPECT_EQ(Paste(nullptr, "Preset_M_P_V"), "pastes 5");
    EXPECT_TRUE(m_Clipboard.Copy(CIntObject(6), nullptr, "Preset_M_P_V")); // In its place.
    EXPECT_EQ(Paste(nullptr, "Preset_M_P_V"), "pastes 6");
    EXPECT_TRUE(m_Clipboard.Clear());
    EXPECT_FALSE(m_Clipboard.HasData(nullptr, nullptr) || m_System.HasFormat("Format"));
    EXPECT_FALSE(m_System.SetData("x", 1, nullptr) || m_System.SetData(nullptr, 1, "f") ||
                 m_System.SetData("x", -1, "f") || m_System.HasFormat(nullptr));
}

TEST_F(CClipboardTest, MatchesCategoryAndFormat) {
    const struct {
        const char *m_Name, *m_Format, *m_Category;
        bool m_Matches;
    } cases[] = {{"_MarrowSound_-[A]-f", nullptr, nullptr, true},
                 {"_MarrowSound_-[A]-f", "f", "A", true},
                 {"_MarrowSound_-[A]-f", "f", "a", false},
                 {"_MarrowSound_-[A]-f", nullptr, "AB", false},
                 {"_MarrowSound_-[AB]-f", nullptr, "A", false},
                 {"_MarrowSound_-[A]-f", "", "A", false},
                 {"_MarrowSound_-[]-", "", "", true},
                 {"_MarrowSound_-[A]-]-f", "]-f", "A", true},
                 {"_MarrowSound_-[A]-{CPasted}", "{IPasted}", "A", true},
                 {"_MarrowSound_-[A]-{IPasted}", "{CPasted}", "A", false},
                 {"_MarrowSound_-[A", nullptr, nullptr, false},
                 {"x_MarrowSound_-[A]-f", nullptr, nullptr, false}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test.m_Name);
        m_Clipboard.Clear();
        Set("]-", "<r><Data v='1'/></r>");
        Set(test.m_Name, "<r><Data v='2'/></r>");
        EXPECT_EQ(m_Clipboard.HasData(test.m_Format, test.m_Category), test.m_Matches);
        EXPECT_EQ(Paste(test.m_Format, test.m_Category), test.m_Matches ? "pastes 2" : "fails 7");
    }
}

// All without the closing zero.
TEST_F(CClipboardTest, TakesFromADocumentWhatItHolds) {
    const struct {
        const char* m_Format;
        std::string m_Bytes;
        const char* m_Pasted;
        bool m_Compatible;
    } cases[] = {{"{CPasted}", "<r DataType='{CPasted}'><Data v='1'/></r>", "pastes 1", true},
                 {"{IPasted}", "<r DataType='{CPasted}'/>", "fails 7", true},
                 {"{IPasted}", "<r DataType='{CPasted}' Data='1'/>", "fails 7", true},
                 {"{CPasted}", "<r DataType='{Other}'><Data v='1'/></r>", "pastes 1", false},
                 {"{CPasted}", "<r><DataType/><Data/></r>", "fails -1", false},
                 {"other", "<r DataType='{CPasted}'><Data v='1'/></r>", "fails 7", false},
                 {"{CPasted}", "<r DataType='{CPasted}'><Data v='1'/>", "fails 7", false},
                 {"{CPasted}", "plain text", "fails 7", false},
                 {"{CPasted}", std::string(100, '\0'), "fails 7", false},
                 {"{CPasted}", "", "fails 7", false}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test.m_Format + test.m_Bytes);
        m_Clipboard.Clear();
        Set((std::string("_MarrowSound_-[A]-") + test.m_Format).c_str(), test.m_Bytes);
        EXPECT_EQ(Paste("{IPasted}", "A"), test.m_Pasted);
        EXPECT_EQ(m_Clipboard.HasCompatibleData("{IPasted}", "A"), test.m_Compatible);
        const std::unique_ptr<IPasted> made(
            static_cast<IPasted*>(m_Clipboard.CreatePasted("{IPasted}", "A")));
        EXPECT_EQ(made != nullptr, test.m_Compatible);
        EXPECT_FALSE(m_Clipboard.HasCompatibleData(nullptr, "A") ||
                     m_Clipboard.CreatePasted(nullptr, "A"));
    }
}

} // namespace Lathe::Serialization::Tests
