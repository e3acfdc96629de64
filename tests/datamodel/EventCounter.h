// Counts how often an event fires, and keeps the order in which several events do.
#pragma once

#include "core/events/EventProvider.h"

#include <string>
#include <utility>

namespace Lathe::DataModel {

class CEventCounter {
public:
    // Each event adds the name to the journal, if there is one.
    explicit CEventCounter(Core::IEventProvider& provider, std::string* journal = nullptr,
                           std::string name = {})
        : m_Provider(provider),
          m_Journal(journal),
          m_Name(std::move(name)),
          m_Command(*this, &CEventCounter::OnEvent) {
        m_Provider.AddCommand(m_Command);
    }
    ~CEventCounter() { m_Provider.RemoveCommand(m_Command); }
    CEventCounter(const CEventCounter&) = delete;
    CEventCounter& operator=(const CEventCounter&) = delete;

    // The count since the last call.
    int Take() { return std::exchange(m_Count, 0); }

private:
    void OnEvent() {
        ++m_Count;
        if (m_Journal)
            *m_Journal += m_Name;
    }

    Core::IEventProvider& m_Provider;
    std::string* m_Journal;
    std::string m_Name;
    int m_Count = 0;
    Core::TCommand<CEventCounter> m_Command;
};

} // namespace Lathe::DataModel
