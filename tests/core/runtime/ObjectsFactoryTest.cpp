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
const CFactoryRegistration<CBoth, IPart<1>> g_First;
const CFactoryRegistration<CBoth, IPart<2>> g_Second;

} // namespace

TEST(ObjectsFactoryTest, MakesEachRegisteredPairAndNothingElse) {
    const CObjectsFactory& registry = CObjectsFactory::GetInstance();
    // A pointer to the wrong base would show the other one's number.
    EXPECT_EQ(std::unique_ptr<IPart<1>>(CreateObject<IPart<1>>("{both}"))->m_Number, 1);
    EXPECT_EQ(std::unique_ptr<IPart<2>>(CreateObject<IPart<2>>("{both}"))->m_Number, 2);

    const char* const pairs[][2] = {
        {"{both}", "{three}"}, {"{one}", "{both}"}, {"{both}", nullptr}, {nullptr, "{one}"}};
    for (const auto& [classId, interfaceId] : pairs)
        EXPECT_EQ(registry.CreateObject(classId, interfaceId), nullptr);
}
