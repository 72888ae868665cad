#pragma once

#include "ui/logs/LogLines.h"

#include <QAbstractListModel>
#include <QTimer>

namespace quorvane {

class SystemManager;

/// The lines of the log as rows, or those of an earlier run's. What has come is taken in when the event loop comes round, a little in each of its turns, so
/// that neither a line costs who logs it, nor a long log who opens it.
class LogModel : public QAbstractListModel {
    Q_OBJECT

public:
    explicit LogModel(const SystemManager& system, QObject* parent = nullptr);

    void showThisRun();
    void showKept(const QStringList& lines);
    /// The lines of the earlier run, whatever tag is shown.
    const QStringList& kept() const { return m_kept; }

    int rowCount(const QModelIndex& parent = {}) const override;
    /// The line as it may be shown: on one line, and cut where nobody reads on.
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    /// As it stands in the log.
    QStringView line(int row) const { return m_lines.line(row); }
    /// Lines with a line end between two, as they stand in the log.
    QString text(int first, int last) const;

    /// Shows the entries of one tag; all when none.
    void setTag(const std::optional<QString>& tag);
    /// Those that were met so far.
    const QStringList& tags() const { return m_lines.tags(); }

private:
    void beginAnew();
    void takeIn();

    const SystemManager& m_system;
    QStringList m_kept; ///< of an earlier run, while it is shown
    bool m_showsThisRun = true;
    LogLines m_lines;
    std::optional<QString> m_tag;
    int m_rows = 0; ///< that the views know of
    QTimer m_turn;
};

} // namespace quorvane
