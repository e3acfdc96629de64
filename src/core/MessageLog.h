// Logs of messages for the user, such as what a parse found.
#pragma once

#include "core/text/CharString.h"

#include <limits>
#include <vector>

namespace Lathe::CoreUtilities {

enum class EMessageLevel : int { Error = 0, Warning = 1, Information = 2 };

class IMessageLog {
public:
    // The text is copied. Detail 0 is for everybody, larger numbers are for the more curious.
    virtual void Log(EMessageLevel level, const char* text, int detail) = 0;
    virtual ~IMessageLog() = default;
};

// Keeps the messages whose detail is at most its own limit, in order.
class CMemMessageLog : public IMessageLog {
public:
    struct SMessage {
        EMessageLevel m_Level;
        Core::CCharString m_Text;
        int m_Detail;
    };

    explicit CMemMessageLog(int detailLimit = std::numeric_limits<int>::max())
        : m_DetailLimit(detailLimit) {}

    void Log(EMessageLevel level, const char* text, int detail) override;
    void Clear() { m_Messages.clear(); }
    const std::vector<SMessage>& GetMessages() const { return m_Messages; }

private:
    std::vector<SMessage> m_Messages;
    int m_DetailLimit;
};

} // namespace Lathe::CoreUtilities
