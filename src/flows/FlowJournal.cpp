#include "flows/FlowJournal.h"

#include "core/JsonErrors.h"
#include "platform/Clock.h"
#include "platform/CommandLauncher.h"
#include "platform/FileManager.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "startup/items/LoginItem.h"

namespace quorvane {

using namespace Qt::StringLiterals;

FlowRecording::~FlowRecording() {
    if (m_journal != nullptr) {
        m_journal->end();
    }
}

FlowJournal::FlowJournal(FlowEnvironment& environment)
    : Flow(environment)
    , m_folder(host().machine.homeFolder() + u"/.quorvane"_s)
    , m_file(m_folder + u"/flow-under-way.jsonl"_s) {}

FlowRecording FlowJournal::record(FlowRecord flow) {
    flow.process = host().machine.processName();
    flow.began = host().clock.now();
    flow.before = {};
    flow.before.notes = readProgramNotes(host().defaults);
    m_record = std::move(flow);
    m_hasBegun = false;
    m_isWritten = false;
    m_hasFailed = false;
    return FlowRecording(*this);
}

/// As a whole: what an earlier run has left is replaced by it.
void FlowJournal::begin(const QStringList& steps, const StateBefore& before) {
    if (!isToBegin()) {
        return;
    }
    m_hasBegun = true;
    m_record->steps = steps;
    const ProgramNotes notes = m_record->before.notes;
    m_record->before = before;
    m_record->before.notes = notes;
    if (const std::optional<StateBefore> first = std::exchange(m_takenUp, std::nullopt)) {
        m_record->before = *first;
    }
    try {
        if (const std::optional<FlowRecord> other = parsedFlowRecord(contents()); other && isAtWork(*other)) {
            fail(u"another Quorvane is at work"_s);
            return;
        }
        host().files.createFolders(m_folder);
        host().files.writeAtomically(m_file, beginningOf(*m_record));
        m_isWritten = true;
    } catch (const FileError& error) {
        fail(error.message());
    } catch (const EncodingError& error) {
        fail(error.message());
    }
}

void FlowJournal::noteLoginItems(const QList<LoginItem>& items) {
    if (!m_isWritten || m_record->before.loginItems) {
        return;
    }
    QList<LoginItemSnapshot> listed;
    for (const LoginItem& item : items) {
        listed.append({item.name, item.path, item.hidden});
    }
    m_record->before.loginItems = listed;
    add(loginItemsLine(listed), FileManager::Flush::Yes);
}

/// A program that quits leaves out its steps, however fast it goes through them.
void FlowJournal::strike(const QString& step) {
    if (m_isWritten && m_record->steps.contains(step) && !host().commands.isShutDown()) {
        add(doneLine(step), FileManager::Flush::No);
    }
}

void FlowJournal::flush() {
    if (m_isWritten) {
        add({}, FileManager::Flush::Yes);
    }
}

std::optional<FlowRecord> FlowJournal::interrupted() const {
    const std::optional<FlowRecord> record = m_isWritten ? std::nullopt : parsedFlowRecord(contents());
    return record && !record->hasEnded && !isAtWork(*record) ? record : std::nullopt;
}

void FlowJournal::forget() {
    try {
        if (host().files.status(m_file).kind != FileStatus::Kind::Missing) {
            host().files.remove(m_file);
        }
    } catch (const FileError& error) {
        log(u"  [ERROR] Could not remove "_s + error.message());
    }
}

/// The line goes before the removal: where that fails, or the power does, nobody is asked about what has ended.
void FlowJournal::end() {
    if (m_isWritten && !host().commands.isShutDown()) {
        add(endLine(), FileManager::Flush::Yes);
        forget();
    }
    m_record.reset();
    m_takenUp.reset();
    m_isWritten = false;
}

QByteArray FlowJournal::contents() const {
    try {
        return host().files.read(m_file);
    } catch (const FileError&) {
        return {}; // there is none, or none that anybody can go by
    }
}

/// This process carries out one flow at a time, so that what it finds of its own has ended.
bool FlowJournal::isAtWork(const FlowRecord& record) const {
    return !record.hasEnded && record.process != host().machine.processName() &&
           host().machine.isRunning(record.process);
}

void FlowJournal::add(const QByteArray& line, FileManager::Flush flush) {
    try {
        host().files.append(m_file, line, flush);
    } catch (const FileError& error) {
        fail(error.message());
    }
}

/// Once: what stands in the file is still true, but for how far the flow came.
void FlowJournal::fail(const QString& reason) {
    if (!std::exchange(m_hasFailed, true)) {
        log(u"  [INFO] Not noted how far this comes, in case it is interrupted: "_s + reason);
    }
}

} // namespace quorvane
