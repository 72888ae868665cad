#include "fakes/CountingWorkspace.h"

namespace quorvane {

void CountingWorkspace::activateIgnoringOtherApps() {
    ++activations;
    m_trace.append(QStringLiteral("activate"));
}

void CountingWorkspace::makeWindowsKeyAndOrderFront() {
    ++windowOrderings;
    m_trace.append(QStringLiteral("windows to the front"));
}

} // namespace quorvane
