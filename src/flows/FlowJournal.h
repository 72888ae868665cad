#pragma once

#include "core/Flow.h"
#include "flows/FlowRecord.h"
#include "platform/FileManager.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>

namespace quorvane {

struct LoginItem;

class FlowJournal;

/// Ends the record of a flow with its scope, whatever became of the flow; not where the program is quitting in the midst of it:
/// that is a run that dies. The journal outlives it.
class FlowRecording {
public:
    FlowRecording(FlowRecording&& other) noexcept
        : m_journal(std::exchange(other.m_journal, nullptr)) {}
    FlowRecording(const FlowRecording&) = delete;
    FlowRecording& operator=(const FlowRecording&) = delete;
    FlowRecording& operator=(FlowRecording&&) = delete;
    ~FlowRecording();

private:
    friend class FlowJournal;
    explicit FlowRecording(FlowJournal& journal)
        : m_journal(&journal) {}

    FlowJournal* m_journal;
};

/// Writes down what a flow is about to do before it does it, in "~/.quorvane/flow-under-way.jsonl", so that a run that dies
/// meanwhile can be finished or taken back by the next. What is added is on the medium before the first change, at the prompt and
/// at the end; a line in between that a power failure takes away is a step that is done once more. One flow at a time. Main thread.
class FlowJournal : private Flow {
public:
    explicit FlowJournal(FlowEnvironment& environment);

    /// From here on the steps of this flow are noted. Nothing is written before `begin`.
    [[nodiscard]] FlowRecording record(FlowRecord flow);
    /// The flow at hand; none outside of one.
    const std::optional<FlowRecord>& underWay() const { return m_record; }
    /// True between `record` and `begin`.
    bool isToBegin() const { return m_record && !m_hasBegun; }

    /// Before the first change.
    /// @param steps   in their order, each once
    /// @param before  without the program's notes; where an interrupted flow is taken up again its own holds
    void begin(const QStringList& steps, const StateBefore& before);
    /// As they were listed; the first list counts. Called before the first of them changes.
    void noteLoginItems(const QList<LoginItem>& items);
    /// A step is done. One that isn't among those of the beginning doesn't count.
    void strike(const QString& step);
    /// All that was struck is on the medium when it returns.
    void flush();

    // ---- What a run has left that died

    /// None where there is none, and where its process is still at work.
    std::optional<FlowRecord> interrupted() const;
    /// The next recorded flow is this one taken up again: what was there before it stays what was there before it.
    void takeUp(const FlowRecord& interrupted) { m_takenUp = interrupted.before; }
    /// It isn't to be taken up any more.
    void forget();

private:
    friend class FlowRecording;
    void end();
    QByteArray contents() const;
    bool isAtWork(const FlowRecord& record) const;
    void add(const QByteArray& line, FileManager::Flush flush);
    void fail(const QString& reason);

    QString m_folder;
    QString m_file;
    std::optional<FlowRecord> m_record; ///< of the flow under way
    std::optional<StateBefore> m_takenUp;
    bool m_hasBegun = false;
    bool m_isWritten = false;
    bool m_hasFailed = false; ///< and that was said
};

} // namespace quorvane
