#pragma once

#include "fakes/CommandLine.h"
#include "platform/BackgroundTaskPermissions.h"

#include <QMap>

namespace quorvane {

using namespace Qt::StringLiterals;

/// Writes what is asked of the library into the trace: "? open {path}", "? look up {symbol}", and for a call
/// "? {symbol} {application} {label} {true|false}".
class ScriptedBackgroundTaskPermissions final : public BackgroundTaskPermissions {
public:
    explicit ScriptedBackgroundTaskPermissions(QStringList& trace)
        : m_trace(trace) {}

    bool openLibrary(const QString& path) override {
        m_trace.append(u"? open "_s + path);
        return isLibraryThere;
    }
    SetUserAllowed entryPoint(const QString& symbol) override {
        m_trace.append(u"? look up "_s + symbol);
        if (!answers.contains(symbol)) {
            return {};
        }
        return [this, symbol](const QString& application, const QString& label, bool isAllowed) {
            m_trace.append(u"? "_s + commandLine({symbol, application, label, isAllowed ? u"true"_s : u"false"_s}));
            return answers.value(symbol);
        };
    }

    bool isLibraryThere = false;
    QMap<QString, bool> answers; ///< what each entry point answers that the library has

private:
    QStringList& m_trace;
};

} // namespace quorvane
