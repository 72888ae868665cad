#include "actions/RowChoice.h"

#include <utility>

namespace quorvane {

RowChoice::RowChoice(ChoiceTexts texts, QObject* parent)
    : SheetModel(parent)
    , m_texts(std::move(texts)) {}

QString RowChoice::text() const {
    if (m_isCarryingOut) {
        return m_texts.carryingOut;
    }
    if (hasFailed()) {
        return m_error;
    }
    if (m_isLoading) {
        return m_texts.loading;
    }
    return m_rows.isEmpty() && m_wasRead ? m_texts.none : QString();
}

void RowChoice::choose(const QString& id) {
    if (!m_isCarryingOut) {
        give(id);
    }
}

void RowChoice::dismiss() {
    if (!m_isCarryingOut) {
        end();
    }
}

QFuture<std::optional<QString>> RowChoice::answer() {
    if (isOver()) {
        return QtFuture::makeReadyFuture(std::optional<QString>());
    }
    m_answer.emplace().start();
    return m_answer->future();
}

void RowChoice::setRows(const QList<ChoosableRow>& rows) {
    if (rows != m_rows) {
        m_rows = rows;
        Q_EMIT changed();
    }
}

void RowChoice::beginLoading() {
    m_isLoading = true;
    Q_EMIT changed();
}

void RowChoice::endLoading(const QString& error) {
    m_isLoading = false;
    m_wasRead = error.isEmpty();
    if (!m_wasRead) {
        m_error = error;
    }
    Q_EMIT changed();
}

void RowChoice::beginCarryingOut() {
    m_isCarryingOut = true;
    m_error.clear();
    Q_EMIT changed();
}

void RowChoice::endCarryingOut(const QString& error) {
    m_isCarryingOut = false;
    m_error = error;
    Q_EMIT changed();
}

void RowChoice::give(const std::optional<QString>& id) {
    if (std::optional<QPromise<std::optional<QString>>> waiting = std::exchange(m_answer, std::nullopt)) {
        waiting->addResult(id);
        waiting->finish();
    }
}

} // namespace quorvane
