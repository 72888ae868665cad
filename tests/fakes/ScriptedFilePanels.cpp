#include "fakes/ScriptedFilePanels.h"

#include <utility>

namespace quorvane {

QFuture<std::optional<QString>> ScriptedFilePanels::save(const QString& title, const QString& suggestedName,
                                                         FileKind kind) {
    asked.append(QStringLiteral("save: ") + title + QStringLiteral(" | ") + suggestedName);
    return chosen(kind);
}

QFuture<std::optional<QString>> ScriptedFilePanels::open(const QString& title, FileKind kind) {
    asked.append(QStringLiteral("open: ") + title);
    return chosen(kind);
}

QFuture<std::optional<QString>> ScriptedFilePanels::chosen(FileKind kind) {
    lastKind = kind;
    if (m_isShutDown || !m_isHolding) {
        return QtFuture::makeReadyFuture(m_isShutDown ? std::nullopt : m_chosen);
    }
    QPromise<std::optional<QString>>& promise = m_open.emplace_back();
    promise.start();
    return promise.future();
}

void ScriptedFilePanels::answer(const std::optional<QString>& path) {
    for (QPromise<std::optional<QString>>& promise : std::exchange(m_open, {})) {
        promise.addResult(path);
        promise.finish();
    }
}

void ScriptedFilePanels::cancelOpen() {
    answer(std::nullopt);
}

void ScriptedFilePanels::shutDown() {
    m_isShutDown = true;
    cancelOpen();
}

} // namespace quorvane
