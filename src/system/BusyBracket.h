#pragma once

#include "system/SystemManager.h"

namespace quorvane {

/// A busy state that ends with its scope. One that stands inside another shows nothing of its own.
class BusyBracket {
public:
    /// @param message  what the window shows meanwhile
    BusyBracket(SystemManager& system, const QString& message)
        : m_system(system) {
        m_system.beginBusy(message);
    }
    BusyBracket(const BusyBracket&) = delete;
    BusyBracket& operator=(const BusyBracket&) = delete;
    ~BusyBracket() { m_system.endBusy(); }

private:
    SystemManager& m_system;
};

} // namespace quorvane
