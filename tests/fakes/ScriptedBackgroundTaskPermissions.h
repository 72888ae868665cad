#pragma once

#include "fakes/CommandLine.h"
#include "platform/BackgroundTaskPermissions.h"

#include <QMap>

#include <functional>

namespace quorvane {

using namespace Qt::StringLiterals;

/// Writes what is asked of the library into the trace: "? open {path}", "? look up {symbol}", and for a call
/// "? {symbol} {application} {label} {true|false}".
class ScriptedBackgroundTaskPermissions final : public BackgroundTaskPermissions {
public:
    explicit ScriptedBackgroundTaskPermissions(QStringList& trace)
        : m_trace(trace) {}

    bool openLibrary(const QString& path) override;
    SetUserAllowed entryPoint(const QString& symbol) override;

    bool isLibraryThere = false;
    QMap<QString, bool> answers;      ///< what each entry point answers that the library has
    std::function<void()> duringCall; ///< what else happens while an entry point is being called

private:
    QStringList& m_trace;
};

} // namespace quorvane
