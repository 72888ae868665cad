#pragma once

#include "platform/Workspace.h"

#include <QStringList>

namespace quorvane {

/// A program without a window. Counts what it is asked for, and writes it into a trace.
class CountingWorkspace final : public Workspace {
public:
    explicit CountingWorkspace(QStringList& trace)
        : m_trace(trace) {}

    bool isActiveNow = true;
    int activations = 0;
    int windowOrderings = 0;

    bool isActive() const override { return isActiveNow; }
    void activateIgnoringOtherApps() override;
    void makeWindowsKeyAndOrderFront() override;

private:
    QStringList& m_trace;
};

} // namespace quorvane
