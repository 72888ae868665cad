#pragma once

#include "actions/PageTexts.h"
#include "actions/SheetModel.h"

#include <QFuture>
#include <QList>
#include <QPromise>
#include <QString>

#include <optional>

namespace quorvane {

/// Something that its user can choose.
struct ChoosableRow {
    QString id;
    RowText text;
    QString note{}; ///< what else there is to say of it; may be empty
    QString mark{}; ///< stands where the button would; may be empty
    bool canBeChosen = true;

    bool operator==(const ChoosableRow&) const = default;
};

/// What a sheet of such rows says.
struct ChoiceTexts {
    QString title;
    QString text;
    QString loading;
    QString carryingOut; ///< while it does what was chosen
    QString none;        ///< where there is nothing to choose
    QString button;      ///< of each row
};

/// Rows as their sheet shows them: those that are here at once, the others when they have come.
class RowChoice final : public SheetModel {
    Q_OBJECT

public:
    explicit RowChoice(ChoiceTexts texts, QObject* parent = nullptr);

    const ChoiceTexts& texts() const { return m_texts; }
    const QList<ChoosableRow>& rows() const { return m_rows; }
    bool isLoading() const { return m_isLoading; }
    /// While it carries one out nothing closes it, and nothing else can be chosen.
    bool isCarryingOut() const { return m_isCarryingOut; }
    bool hasFailed() const { return !m_error.isEmpty(); }
    /// What the sheet says below the rows: what it is busy with, what went wrong, or that there is nothing.
    QString text() const;

    // ---- What the user does

    void choose(const QString& id);
    void dismiss() override;

    // ---- What comes of it

    /// Finishes at the next choice: with its `id`, with none when it is over.
    QFuture<std::optional<QString>> answer();
    void setRows(const QList<ChoosableRow>& rows);
    void beginLoading();
    /// @param error  why an empty list says nothing; empty where it was read
    void endLoading(const QString& error);
    void beginCarryingOut();
    /// @param error  what went wrong; empty also where the user thought better of it
    void endCarryingOut(const QString& error);

protected:
    void settle() override { give(std::nullopt); }

private:
    void give(const std::optional<QString>& id);

    ChoiceTexts m_texts;
    QList<ChoosableRow> m_rows;
    QString m_error;
    bool m_isLoading = false;
    bool m_wasRead = false;
    bool m_isCarryingOut = false;
    std::optional<QPromise<std::optional<QString>>> m_answer; ///< while somebody waits for it
};

} // namespace quorvane
