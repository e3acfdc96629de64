// Proves that the registry makes each class under exactly the interfaces that it was entered with,
// and gives null for everything else.
#include "core/runtime/ObjectsFactory.h"
#include "core/Fixtures.h"

using namespace Lathe::Runtime;

namespace {

template <int Number>
struct IPart {
    static const char* InterfaceId() { return Number == 1 ? "{one}" : "{two}"; }
    virtual ~IPart() = default;
    int m_Number = Number;
};
struct CBoth : IPart<1>, IPart<2> {
    static const char* ClassId() { return "{both}"; }
};
// The dash in its ids makes other pairs look alike once they are joined by one.
struct CDashed {
    static const char* ClassId() { return "a-a"; }
    static const char* InterfaceId() { return "a-a"; }
};
const CFactoryRegistration<CBoth, IPart<1>> g_First;
const CFactoryRegistration<CBoth, IPart<2>> g_Second;
const CFactoryRegistration<CDashed, CDashed> g_Dashed;

} // namespace

TEST(ObjectsFactoryTest, MakesEachRegisteredPairAndNothingElse) {
    const CObjectsFactory& registry = CObjectsFactory::GetInstance();
    // A pointer to the wrong base would show the other one's number.
    EXPECT_EQ(std::unique_ptr<IPart<1>>(CreateObject<IPart<1>>("{both}"))->m_Number, 1);
    EXPECT_EQ(std::unique_ptr<IPart<2>>(CreateObject<IPart<2>>("{both}"))->m_Number, 2);
    EXPECT_TRUE(std::unique_ptr<CDashed>(static_cast<CDashed*>(registry.CreateObject("a-a"))));

    const char* const pairs[][2] = {{"{both}", "{three}"}, {"{three}", "{one}"},
                                    {"{one}", "{both}"},   {"{both}", nullptr},
                                    {nullptr, "{one}"},    {"a", "a-a-a"}};
    for (const auto& [classId, interfaceId] : pairs)
        EXPECT_EQ(registry.CreateObject(classId, interfaceId), nullptr);
}
