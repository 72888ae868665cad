#pragma once

#include "core/NotificationCenter.h"
#include "core/SystemManager.h"
#include "fakes/CommandLine.h"
#include "fakes/MemoryBundles.h"
#include "fakes/MemoryFileManager.h"
#include "fakes/ScriptedBackgroundTaskPermissions.h"
#include "platform/Machine.h"
#include "platform/ScriptEngine.h"
#include "platform/UserDefaults.h"

#include <QCoroTask>
#include <QMap>
#include <QVariant>

#include <gtest/gtest.h>

#include <functional>

namespace quorvane {

using namespace Qt::StringLiterals;

/// Answers commands from a table and writes them into a trace: "$ {command line}", with a "> " behind the "$" where the
/// output is captured.
class ScriptedCommandLauncher final : public CommandLauncher {
public:
    explicit ScriptedCommandLauncher(QStringList& trace)
        : m_trace(trace) {}

    QFuture<CommandOutcome> run(QStringList arguments, OutputCapture capture) override {
        const QString line = commandLine(arguments);
        m_trace.append((capture == OutputCapture::Capture ? u"$> "_s : u"$ "_s) + line);
        return QtFuture::makeReadyFuture(m_answers.value(line, succeeded({})));
    }
    void shutDown() override {}

    /// Every other command succeeds without output.
    void answer(const QString& line, const CommandOutcome& outcome) { m_answers.insert(line, outcome); }
    void print(const QString& line, const QByteArray& output) { answer(line, succeeded(output)); }
    void fail(const QString& line, int status, const QByteArray& error = {}) {
        CommandOutcome outcome = succeeded({});
        outcome.code = status;
        outcome.standardError = error;
        answer(line, outcome);
    }

    static CommandOutcome succeeded(const QByteArray& output) {
        CommandOutcome outcome;
        outcome.ending = CommandOutcome::Ending::Exited;
        outcome.standardOutput = output;
        return outcome;
    }

private:
    QStringList& m_trace;
    QMap<QString, CommandOutcome> m_answers;
};

/// Answers scripts in turn and writes their sources into the trace: "& {source}".
class ScriptedScriptEngine final : public ScriptEngine {
public:
    explicit ScriptedScriptEngine(QStringList& trace)
        : m_trace(trace) {}

    QFuture<ScriptOutcome> run(QString source) override {
        m_trace.append(u"& "_s + source);
        const ScriptOutcome outcome =
            m_outcomes.isEmpty() ? ScriptOutcome{QString(), std::nullopt} : m_outcomes.takeFirst();
        return QtFuture::makeReadyFuture(outcome);
    }
    void shutDown() override {}

    /// Once there is nothing left, every script succeeds with an empty result.
    void answerNext(const ScriptOutcome& outcome) { m_outcomes.append(outcome); }
    void failNext(const QString& message) { answerNext({std::nullopt, message}); }

private:
    QStringList& m_trace;
    QList<ScriptOutcome> m_outcomes;
};

class MemoryUserDefaults final : public UserDefaults {
public:
    std::optional<QString> string(const QString& key) const override {
        return values.contains(key) ? std::optional(values.value(key).toString()) : std::nullopt;
    }
    QStringList stringArray(const QString& key) const override { return values.value(key).toStringList(); }
    void setString(const QString& key, const QString& value) override { values.insert(key, value); }
    void setStringArray(const QString& key, const QStringList& value) override { values.insert(key, value); }

    QMap<QString, QVariant> values;
};

class FixedMachine final : public Machine {
public:
    QString homeFolder() const override { return u"/Users/alex"_s; }
    QString applicationSupportFolder() const override { return u"/Users/alex/Library/Application Support"_s; }
    QString temporaryFolder() const override { return u"/var/folders/zz/alex/T"_s; }
    quint32 userId() const override { return MemoryFileManager::kUser; }
};

/// A SystemManager over scripted ports. `trace` holds commands, scripts and log lines in the order in which they came.
class ScriptedSystem : public ::testing::Test {
protected:
    ScriptedSystem() {
        QObject::connect(&system, &SystemManager::messageLogged, [this](const QString& line) { trace.append(line); });
        QObject::connect(&notifications, &NotificationCenter::posted,
                         [this](const QString& name, const QVariantMap& userInfo) {
                             posted.append({name, userInfo});
                         });
    }

    /// What was logged, run and asked since the last call, one per line.
    QString takeTrace() { return std::exchange(trace, {}).join(u'\n') + u'\n'; }

    QStringList trace;
    QList<QPair<QString, QVariantMap>> posted;
    ScriptedCommandLauncher commands{trace};
    ScriptedScriptEngine scripts{trace};
    MemoryFileManager files;
    MemoryUserDefaults defaults;
    FixedMachine machine;
    MemoryPropertyLists propertyLists;
    MemoryBundles bundles;
    ScriptedBackgroundTaskPermissions permissions{trace};
    NotificationCenter notifications;
    SystemManager system{Host{commands, scripts, files, defaults, machine, propertyLists, bundles, permissions},
                         notifications};
};

} // namespace quorvane
