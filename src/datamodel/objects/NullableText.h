// An owned text that can be missing, which is not the same as empty.
#pragma once

#include "core/text/CharString.h"

#include <memory>

namespace Lathe::DataModel::Objects {

class CNullableText {
public:
    CNullableText() = default;
    explicit CNullableText(const char* text) { Set(text); }

    // Null when there is no text; valid until the next change.
    const char* Get() const { return m_Text.get(); }
    // Null clears; the text may be this one.
    void Set(const char* text) { m_Text.reset(text ? Core::NewText(text) : nullptr); }

private:
    std::unique_ptr<char[]> m_Text;
};

} // namespace Lathe::DataModel::Objects
