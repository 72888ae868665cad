#include "actions/BackupChoice.h"

#include "actions/SettingsTexts.h"

#include <utility>

namespace quorvane {

QString BackupChoice::text() const {
    if (m_isRestoring) {
        return kRestoringProfiles;
    }
    if (hasFailed()) {
        return m_error;
    }
    if (m_isLoading) {
        return kLoadingBackups;
    }
    return m_rows.isEmpty() && m_wasRead ? kNoBackups : QString();
}

void BackupChoice::restore(const QString& id) {
    if (!m_isRestoring) {
        give(id);
    }
}

void BackupChoice::dismiss() {
    if (!m_isRestoring) {
        end();
    }
}

QFuture<std::optional<QString>> BackupChoice::answer() {
    if (isOver()) {
        return QtFuture::makeReadyFuture(std::optional<QString>());
    }
    m_answer.emplace().start();
    return m_answer->future();
}

void BackupChoice::setRows(const QList<BackupRow>& rows) {
    if (rows != m_rows) {
        m_rows = rows;
        Q_EMIT changed();
    }
}

void BackupChoice::beginLoading() {
    m_isLoading = true;
    Q_EMIT changed();
}

void BackupChoice::endLoading(const QString& error) {
    m_isLoading = false;
    m_wasRead = error.isEmpty();
    if (!m_wasRead) {
        m_error = error;
    }
    Q_EMIT changed();
}

void BackupChoice::beginRestoring() {
    m_isRestoring = true;
    m_error.clear();
    Q_EMIT changed();
}

void BackupChoice::endRestoring(const QString& error) {
    m_isRestoring = false;
    m_error = error;
    Q_EMIT changed();
}

void BackupChoice::give(const std::optional<QString>& id) {
    if (std::optional<QPromise<std::optional<QString>>> waiting = std::exchange(m_answer, std::nullopt)) {
        waiting->addResult(id);
        waiting->finish();
    }
}

} // namespace quorvane
