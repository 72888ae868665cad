#include "runlogs/RunLogWriter.h"

#include "platform/Clock.h"
#include "platform/FileManager.h"
#include "system/SystemManager.h"

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kFullLine("  [INFO] This file is full. What followed stood in the window alone.\n");

} // namespace

RunLogWriter::RunLogWriter(SystemManager& system, RunLogs& logs, const Clock& clock)
    : m_system(system)
    , m_logs(logs)
    , m_clock(clock) {
    m_turn.setSingleShot(true);
    m_turn.setInterval(0);
    connect(&m_turn, &QTimer::timeout, this, &RunLogWriter::flush);
    connect(&system, &SystemManager::messageLogged, this, &RunLogWriter::take);
}

RunLogWriter::~RunLogWriter() {
    m_hasEnded = true;
    try {
        writePending();
    } catch (const FileError&) {
        return; // who could be told is gone
    }
}

void RunLogWriter::take(const QString& message) {
    if (m_hasEnded) {
        return;
    }
    const QByteArray line = message.toUtf8() + '\n';
    m_hasEnded = m_size + line.size() + kFullLine.size() > kLargestFile;
    const QByteArrayView taken = m_hasEnded ? kFullLine : QByteArrayView(line);
    m_pending.append(taken);
    m_size += taken.size();
    if (!m_turn.isActive()) {
        m_turn.start();
    }
}

void RunLogWriter::flush() {
    m_turn.stop();
    const bool begins = m_file.isEmpty() && !m_pending.isEmpty();
    try {
        writePending();
    } catch (const FileError& error) {
        m_hasEnded = true; // before it is told: that is a line, too
        m_system.log(u"  [ERROR] The log of this run can’t be kept: "_s + error.message());
        return;
    }
    if (begins) {
        forgetOld();
    }
}

/// The lines first, so that no run goes for one that can't be kept.
void RunLogWriter::forgetOld() {
    try {
        m_logs.forgetOldBeside(m_file);
    } catch (const FileError& error) {
        m_system.log(u"  [ERROR] The log of an older run can’t be removed: "_s + error.message());
    }
}

void RunLogWriter::writePending() {
    const QByteArray pending = std::exchange(m_pending, {});
    if (pending.isEmpty()) {
        return;
    }
    if (m_file.isEmpty()) {
        m_file = m_logs.nameForNew(m_clock.now()).file;
    }
    m_logs.append(m_file, pending);
}

} // namespace quorvane
