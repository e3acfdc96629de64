// Objects in the clipboard: the names and bytes that other programs see, which data match, and what
// hostile ones do.
#include "serialization/clipboard/ObjectClipboard.h"

#include "core/runtime/ObjectsFactory.h"
#include "serialization/Streams.h"
#include "serialization/clipboard/MemClipboard.h"

namespace Lathe::Serialization::Tests {

namespace {

using namespace std::string_literals;

struct IPasted : CIntObject, virtual ITypeSerializable {
    static const char* InterfaceId() { return "{IPasted}"; }
};
struct CPasted : IPasted {
    static const char* ClassId() { return "{CPasted}"; }
    const char* GetClassId() const override { return ClassId(); }
};
const Runtime::CFactoryRegistration<CPasted, IPasted> Registration;

struct CClipboardTest : testing::Test {
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
    EXPECT_TRUE(m_Clipboard.Copy(CIntObject(4), nullptr, "Preset_M_P_V") &&
                m_Clipboard.Copy(typed, nullptr, "Cat") &&
                m_Clipboard.Copy(typed, "Format", nullptr) && // The first is replaced.
                m_Clipboard.Copy(CIntObject(5), nullptr, "Preset_M_P_V"));
    const std::string head = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n<ClipboardData";
    const std::string tail = ">\n    <Data v=\"5\" />\n</ClipboardData>\n\0"s;
    const std::string typedTail = " DataType=\"{CPasted}\"" + tail;
    auto names = m_System.GetFormats();
    for (const auto& [name, bytes] : {std::pair("_MarrowSound_-[Preset_M_P_V]-", head + tail),
                                      std::pair("_MarrowSound_-[Cat]-{CPasted}", head + typedTail),
                                      std::pair("_MarrowSound_-[]-Format", head + typedTail)}) {
        ASSERT_FALSE(names->IsDone());
        EXPECT_STREQ(names->GetValue(), name);
        EXPECT_EQ(m_System.GetData(name), bytes);
        names->Next();
    }
    EXPECT_TRUE(names->IsDone());
    EXPECT_EQ(Paste(nullptr, "Preset_M_P_V"), "pastes 5");
    EXPECT_TRUE(m_Clipboard.Clear() && !m_Clipboard.HasData(nullptr, nullptr));
    EXPECT_FALSE(m_System.SetData("x", 1, nullptr) || m_System.SetData(nullptr, 1, "f") ||
                 m_System.SetData("x", -1, "f") || m_System.HasFormat(nullptr));
}

// Data without the closing zero, behind others that never match.
TEST_F(CClipboardTest, TakesFromTheFirstMatchWhatItHolds) {
    const std::string plain = "<r><Data v='1'/></r>", typed = "<r DataType='{CPasted}'/>";
    const std::string full = "<r DataType='{CPasted}'><Data v='1'/></r>";
    const char *object = "_MarrowSound_-[A]-{CPasted}", *interface = "_MarrowSound_-[A]-{IPasted}";
    const struct {
        const char* m_Name;
        std::string m_Bytes;
        const char *m_Format, *m_Category, *m_Pasted;
        // Whether there are data that match, and whether an object can be made of them.
        bool m_Has, m_Makes;
    } cases[] = {
        {"_MarrowSound_-[A]-f", plain, "f", "A", "pastes 1", true, false},
        {"_MarrowSound_-[A]-f", plain, "f", "a", "fails 7", false, false},
        {"_MarrowSound_-[A]-f", plain, "", "A", "fails 7", false, false},
        {"_MarrowSound_-[A]-]-f", plain, "]-f", "A", "pastes 1", true, false},
        {"_MarrowSound_-[A", plain, nullptr, nullptr, "fails 7", false, false},
        {"x_MarrowSound_-[A]-f", plain, nullptr, nullptr, "fails 7", false, false},
        {interface, full, "{CPasted}", "A", "fails 7", false, false},
        {object, full, "{IPasted}", "A", "pastes 1", true, true},
        {interface, typed, "{IPasted}", "A", "fails 7", true, true},
        {interface, "<r DataType='{CPasted}' Data='1'/>", "{IPasted}", "A", "fails 7", true, true},
        {object, "<r DataType='{B}'><Data v='1'/></r>", "{IPasted}", "A", "pastes 1", true, false},
        {object, "<r><DataType/><Data/></r>", "{IPasted}", "A", "fails -1", true, false},
        {object, full.substr(0, full.size() - 1), "{IPasted}", "A", "fails 7", true, false},
        {object, "", "{IPasted}", "A", "fails 7", true, false}};
    for (const auto& [name, bytes, format, category, pasted, has, makes] : cases) {
        SCOPED_TRACE(name + bytes);
        m_Clipboard.Clear();
        EXPECT_TRUE(m_System.SetData(full.data(), static_cast<int>(full.size()), "]-") &&
                    m_System.SetData(bytes.data(), static_cast<int>(bytes.size()), name));
        EXPECT_EQ(m_Clipboard.HasData(format, category), has);
        EXPECT_EQ(Paste(format, category), pasted);
        EXPECT_EQ(m_Clipboard.HasCompatibleData(format, category), makes);
        const std::unique_ptr<IPasted> made(
            static_cast<IPasted*>(m_Clipboard.CreatePasted(format, category)));
        EXPECT_EQ(made != nullptr, makes);
    }
}

} // namespace Lathe::Serialization::Tests
