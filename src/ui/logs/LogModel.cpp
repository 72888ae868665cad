#include "ui/logs/LogModel.h"

#include "core/OneLine.h"
#include "system/SystemManager.h"

#include <QElapsedTimer>

namespace quorvane {

namespace {

constexpr qsizetype kLongestShown = 2000;
constexpr int kTurn = 2; // milliseconds

} // namespace

LogModel::LogModel(const SystemManager& system, QObject* parent)
    : QAbstractListModel(parent)
    , m_system(system)
    , m_lines(system.logMessages()) {
    m_turn.setSingleShot(true);
    m_turn.setInterval(0);
    connect(&m_turn, &QTimer::timeout, this, &LogModel::takeIn);
    connect(&system, &SystemManager::messageLogged, &m_turn, [this] {
        if (!m_turn.isActive()) {
            m_turn.start();
        }
    });
    connect(&system, &SystemManager::logCleared, this, [this] {
        if (m_showsThisRun) {
            beginAnew();
        }
    });
    takeIn();
}

int LogModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_rows;
}

QVariant LogModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole || !index.isValid()) {
        return {};
    }
    const QStringView whole = m_lines.line(index.row());
    const QString shown = onOneLine(whole.left(kLongestShown).toString());
    return whole.size() > kLongestShown ? shown + u'…' : shown;
}

QString LogModel::text(int first, int last) const {
    QString text;
    for (int row = first; row <= last; ++row) {
        text += row > first ? QStringView(u"\n") : QStringView();
        text += m_lines.line(row);
    }
    return text;
}

void LogModel::setTag(const std::optional<QString>& tag) {
    if (tag != m_tag) {
        m_tag = tag;
        beginAnew();
    }
}

void LogModel::showThisRun() {
    m_showsThisRun = true;
    m_lines.follow(m_system.logMessages());
    beginAnew();
    m_kept.clear();
}

void LogModel::showKept(const QStringList& lines) {
    m_showsThisRun = false;
    m_kept = lines;
    m_lines.follow(m_kept);
    beginAnew();
}

void LogModel::beginAnew() {
    beginResetModel();
    m_lines.reset(m_tag);
    m_rows = 0;
    endResetModel();
    takeIn();
}

void LogModel::takeIn() {
    QElapsedTimer turn;
    turn.start();
    bool isMore = true;
    while (isMore && turn.elapsed() < kTurn) {
        isMore = m_lines.takeNext();
    }
    if (m_lines.count() > m_rows) {
        beginInsertRows({}, m_rows, m_lines.count() - 1);
        m_rows = m_lines.count();
        endInsertRows();
    }
    if (isMore) {
        m_turn.start();
    }
}

} // namespace quorvane
