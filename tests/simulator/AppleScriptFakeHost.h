#pragma once

#include "simulator/applescript/AppleScript.h"

#include <gtest/gtest.h>

#include <QList>

#include <ostream>
#include <vector>

namespace macsim {

inline void PrintTo(const ScriptError& error, std::ostream* out) {
    *out << "error " << error.number << " at " << error.start << ':' << error.end << ": "
         << error.message.toStdString();
}

inline void PrintTo(const ScriptResult& result, std::ostream* out) {
    *out << (result.hasValue ? result.sourceForm.toStdString() : "(no value)");
}

class FakeApplication : public ScriptApplication {
public:
    QString name() const override { return QStringLiteral("System Events"); }
};

/// A host that keeps what it was asked for. It has one application, System Events.
class FakeScriptHost : public ScriptHost {
public:
    ShellScriptOutcome doShellScript(const ShellScriptRequest& request) override {
        requests.push_back(request);
        if (refusal) {
            throw ScriptError(*refusal);
        }
        return outcome;
    }

    const ScriptDictionary* findDictionary(const QString& /*application*/) override { return nullptr; }

    void limitEvents(std::chrono::seconds limit) override { limits.push_back(limit); }

    ScriptApplication* findApplication(const QString& name) override {
        return name.compare(m_application.name(), Qt::CaseInsensitive) == 0 ? &m_application : nullptr;
    }

    std::vector<ShellScriptRequest> requests;
    std::vector<std::chrono::seconds> limits; ///< of events, as they changed
    ShellScriptOutcome outcome;
    std::optional<ScriptError> refusal;

private:
    FakeApplication m_application;
};

/// The result of a script that must run.
inline ScriptResult resultOf(const QString& source, FakeScriptHost& host) {
    const auto outcome = runAppleScript(source, host);
    if (const auto* error = std::get_if<ScriptError>(&outcome)) {
        ADD_FAILURE() << source.toStdString() << "\n  gave " << testing::PrintToString(*error);
        return {};
    }
    return std::get<ScriptResult>(outcome);
}

/// The error of a script that must fail.
inline ScriptError errorOf(const QString& source, FakeScriptHost& host) {
    const auto outcome = runAppleScript(source, host);
    if (const auto* result = std::get_if<ScriptResult>(&outcome)) {
        ADD_FAILURE() << source.toStdString() << "\n  gave " << testing::PrintToString(*result);
        return {};
    }
    return std::get<ScriptError>(outcome);
}

inline std::string valueOf(const QString& source) {
    FakeScriptHost host;
    return resultOf(source, host).sourceForm.toStdString();
}

inline ScriptError errorOf(const QString& source) {
    FakeScriptHost host;
    return errorOf(source, host);
}

} // namespace macsim
