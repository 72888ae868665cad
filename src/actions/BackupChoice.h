#pragma once

#include "actions/PageTexts.h"
#include "actions/SheetModel.h"

#include <QFuture>
#include <QList>
#include <QPromise>
#include <QString>

#include <optional>

namespace quorvane {

/// A backup in iCloud that its user can choose.
struct BackupRow {
    QString id;
    RowText text;

    bool operator==(const BackupRow&) const = default;
};

/// The backups in iCloud as their sheet shows them: those that are here at once, the others when they have come.
class BackupChoice final : public SheetModel {
    Q_OBJECT

public:
    using SheetModel::SheetModel;

    const QList<BackupRow>& rows() const { return m_rows; }
    bool isLoading() const { return m_isLoading; }
    /// While it restores nothing closes it, and nothing else can be chosen.
    bool isRestoring() const { return m_isRestoring; }
    bool hasFailed() const { return !m_error.isEmpty(); }
    /// What the sheet says below the rows: what it is busy with, what went wrong, or that there is nothing.
    QString text() const;

    // ---- What the user does

    void restore(const QString& id);
    void dismiss() override;

    // ---- What comes of it

    /// Finishes at the next choice: with its `id`, with none when it is over.
    QFuture<std::optional<QString>> answer();
    void setRows(const QList<BackupRow>& rows);
    void beginLoading();
    /// @param error  why an empty list says nothing; empty where it was read
    void endLoading(const QString& error);
    void beginRestoring();
    /// @param error  what went wrong; empty also where the user thought better of it
    void endRestoring(const QString& error);

protected:
    void settle() override { give(std::nullopt); }

private:
    void give(const std::optional<QString>& id);

    QList<BackupRow> m_rows;
    QString m_error;
    bool m_isLoading = false;
    bool m_wasRead = false;
    bool m_isRestoring = false;
    std::optional<QPromise<std::optional<QString>>> m_answer; ///< while somebody waits for it
};

} // namespace quorvane
