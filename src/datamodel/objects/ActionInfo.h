// The description of an action: its names and an optional picture for menus and buttons.
#pragma once

#include "datamodel/objects/ObjectInfo.h"

#include <memory>

namespace Lathe::Graphics {
class I2DGraphics;
}

namespace Lathe::DataModel::Objects {

class IConstActionInfo : public virtual IConstObjectInfo {
public:
    // Null when there is none.
    virtual const Graphics::I2DGraphics* GetGraphics() const = 0;
};

class IActionInfo : public virtual IConstActionInfo, public virtual IObjectInfo {
public:
    // How to destroy a picture, whose class is unknown here; null for one that is not owned.
    using GraphicsDeleter = void (*)(const Graphics::I2DGraphics*);

    // Setting the picture that is already there changes only who owns it. Fires the changed event
    // always.
    virtual void SetGraphics(const Graphics::I2DGraphics* graphics, GraphicsDeleter deleter) = 0;

    // For callers that know the class of pictures: an owned one is deleted through it.
    template <class TGraphics>
    void SetGraphics(const TGraphics* graphics, bool owned) {
        SetGraphics(graphics, owned ? &DeleteGraphics<TGraphics> : GraphicsDeleter());
    }

protected:
    template <class TGraphics>
    static void DeleteGraphics(const Graphics::I2DGraphics* graphics) {
        static_assert(sizeof(TGraphics) > 0, "the class of pictures must be complete here");
        delete static_cast<const TGraphics*>(graphics);
    }
};

class CActionInfo : public CObjectInfo, public virtual IActionInfo {
public:
    explicit CActionInfo(const char* name = nullptr, const char* description = nullptr)
        : CObjectInfo(name, description), m_Graphics(nullptr, &KeepGraphics) {}
    template <class TGraphics>
    CActionInfo(const char* name, const char* description, const TGraphics* graphics, bool owned)
        : CActionInfo(name, description) {
        SetGraphics(graphics, owned);
    }

    using IActionInfo::SetGraphics;
    const Graphics::I2DGraphics* GetGraphics() const override { return m_Graphics.get(); }
    void SetGraphics(const Graphics::I2DGraphics* graphics, GraphicsDeleter deleter) override;

private:
    // The deleter of a picture that is not owned.
    static void KeepGraphics(const Graphics::I2DGraphics*) {}

    std::unique_ptr<const Graphics::I2DGraphics, GraphicsDeleter> m_Graphics;
};

} // namespace Lathe::DataModel::Objects
