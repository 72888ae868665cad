#include "Heartbeat.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>

namespace quorvane {

namespace {

constexpr int kBeat = 1; // milliseconds
constexpr std::chrono::milliseconds kWorthNaming(2);

} // namespace

Heartbeat::Heartbeat() {
    if (!m_schedule.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        qFatal("%s", qPrintable(m_schedule.errorString()));
    }
}

/// The file holds nanoseconds.
Heartbeat::Moment Heartbeat::now() {
    m_schedule.seek(0);
    const QList<QByteArray> fields = m_schedule.readAll().split(' ');
    return {Clock::now().time_since_epoch(), std::chrono::nanoseconds(fields.value(0).toLongLong()),
            std::chrono::nanoseconds(fields.value(1).toLongLong())};
}

void Heartbeat::begin() {
    m_longest = {};
    m_longestEvent = {};
    m_eventBegan = Clock::now();
    m_lastBeat = now();
    qApp->installEventFilter(this);
    m_timer.start(kBeat, Qt::PreciseTimer, this);
}

Heartbeat::Stall Heartbeat::end() {
    beat();
    m_timer.stop();
    qApp->removeEventFilter(this);
    return m_longest;
}

void Heartbeat::timerEvent(QTimerEvent*) {
    beat();
}

void Heartbeat::beat() {
    endEvent(Clock::now());
    const Moment moment = now();
    const double waited = (moment.time - m_lastBeat.time - (moment.ready - m_lastBeat.ready)).count() - kBeat;
    if (waited > m_longest.milliseconds) {
        m_longest = {waited, (moment.worked - m_lastBeat.worked).count(), m_longestName};
    }
    m_longestEvent = {};
    m_longestName.clear();
    m_receiver = "no event";
    m_type = 0;
    m_lastBeat = moment;
}

void Heartbeat::endEvent(Clock::time_point now) {
    const Clock::duration lasted = now - m_eventBegan;
    if (lasted > std::max<Clock::duration>(m_longestEvent, kWorthNaming)) {
        m_longestEvent = lasted;
        m_longestName = QByteArray(m_receiver) + ", event " + QByteArray::number(m_type) + ", " +
                        QByteArray::number(std::chrono::duration<double, std::milli>(lasted).count(), 'f', 1) + " ms";
    }
    m_eventBegan = now;
}

bool Heartbeat::eventFilter(QObject* watched, QEvent* event) {
    if (watched != this) {
        endEvent(Clock::now());
        m_receiver = watched->metaObject()->className();
        m_type = event->type();
    }
    return false;
}

} // namespace quorvane
