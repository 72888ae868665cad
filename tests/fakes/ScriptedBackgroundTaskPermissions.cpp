#include "fakes/ScriptedBackgroundTaskPermissions.h"

namespace quorvane {

bool ScriptedBackgroundTaskPermissions::openLibrary(const QString& path) {
    m_trace.append(u"? open "_s + path);
    return isLibraryThere;
}

BackgroundTaskPermissions::SetUserAllowed ScriptedBackgroundTaskPermissions::entryPoint(const QString& symbol) {
    m_trace.append(u"? look up "_s + symbol);
    if (!answers.contains(symbol)) {
        return {};
    }
    return [this, symbol](const QString& application, const QString& label, bool isAllowed) {
        m_trace.append(u"? "_s + commandLine({symbol, application, label, isAllowed ? u"true"_s : u"false"_s}));
        if (duringCall) {
            duringCall();
        }
        return answers.value(symbol);
    };
}

} // namespace quorvane
