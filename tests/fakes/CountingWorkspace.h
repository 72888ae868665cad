#pragma once

#include "platform/Workspace.h"

#include <QStringList>

namespace quorvane {

/// A program without a window. Counts what it is asked for, and writes it into a trace.
class CountingWorkspace final : public Workspace {
public:
    explicit CountingWorkspace(QStringList& trace)
        : m_trace(trace) {}

    int activations = 0;
    int windowOrderings = 0;

    void activateIgnoringOtherApps() override {
        ++activations;
        m_trace.append(QStringLiteral("activate"));
    }
    void makeWindowsKeyAndOrderFront() override {
        ++windowOrderings;
        m_trace.append(QStringLiteral("windows to the front"));
    }

private:
    QStringList& m_trace;
};

} // namespace quorvane
