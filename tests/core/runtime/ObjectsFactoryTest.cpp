// Proves that the registry makes each class under exactly the interfaces that it was entered with,
// and gives null for everything else.
#include "core/runtime/ObjectsFactory.h"

#include <gtest/gtest.h>

#include <memory>

using namespace Lathe;

namespace {

struct IShape {
    static const char* InterfaceId() { return "{shape}"; }
    virtual int GetCorners() const = 0;
    virtual ~IShape() = default;
};
struct INamed {
    static const char* InterfaceId() { return "{named}"; }
    virtual char GetName() const = 0;
    virtual ~INamed() = default;
};
struct CSquare : IShape, INamed {
    static const char* ClassId() { return "{square}"; }
    int GetCorners() const override { return 4; }
    char GetName() const override { return 'S'; }
};
// The dash in its ids makes other pairs look alike once they are joined by one.
struct CDashed : IShape {
    static const char* ClassId() { return "a-a"; }
    static const char* InterfaceId() { return "a-a"; }
    int GetCorners() const override { return 2; }
};

const Runtime::CFactoryRegistration<CSquare, IShape> g_SquareAsShape;
const Runtime::CFactoryRegistration<CSquare, INamed> g_SquareAsNamed;
const Runtime::CFactoryRegistration<CDashed, CDashed> g_Dashed;

} // namespace

TEST(ObjectsFactoryTest, MakesEachRegisteredPairAndNothingElse) {
    const Runtime::CObjectsFactory& registry = Runtime::CObjectsFactory::GetInstance();
    // A pointer to the wrong base would call the other interface's slot.
    const std::unique_ptr<IShape> shape(Runtime::CreateObject<IShape>("{square}"));
    const std::unique_ptr<INamed> named(Runtime::CreateObject<INamed>("{square}"));
    const std::unique_ptr<CDashed> dashed(static_cast<CDashed*>(registry.CreateObject("a-a")));
    ASSERT_TRUE(shape && named && dashed);
    EXPECT_EQ(shape->GetCorners(), 4);
    EXPECT_EQ(named->GetName(), 'S');
    EXPECT_EQ(dashed->GetCorners(), 2);

    const char* const pairs[][2] = {
        {"{square}", "{unknown}"}, {"{unknown}", "{shape}"}, {"{SQUARE}", "{shape}"},
        {"{shape}", "{square}"},   {"{square}", "{square}"}, {nullptr, "{shape}"},
        {"{square}", nullptr},     {"a", "a-a-a"},           {"a-a-a", "a"}};
    for (const auto& [classId, interfaceId] : pairs)
        EXPECT_EQ(registry.CreateObject(classId, interfaceId), nullptr)
            << (classId ? classId : "null") << ' ' << (interfaceId ? interfaceId : "null");
}
