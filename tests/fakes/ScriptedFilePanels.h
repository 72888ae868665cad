#pragma once

#include "platform/FilePanels.h"

#include <QPromise>
#include <QStringList>

#include <vector>

namespace quorvane {

/// Chooses at once what a test says, or cancels, and writes down what it was asked for: "save: {title} | {suggested name}",
/// "open: {title}".
class ScriptedFilePanels final : public FilePanels {
public:
    /// @param disk  where the chosen files lie
    explicit ScriptedFilePanels(FileManager& disk)
        : m_files(disk) {}

    QFuture<std::optional<QString>> save(const QString& title, const QString& suggestedName, FileKind kind) override;
    QFuture<std::optional<QString>> open(const QString& title, FileKind kind) override;
    FileManager& files() override { return m_files; }
    void cancelOpen() override;
    void shutDown() override;

    /// From now on this path is chosen; with none panels are cancelled, as at the beginning.
    void choose(const std::optional<QString>& path) { m_chosen = path; }
    /// From now on panels stay open until they are answered or cancelled.
    void hold() { m_isHolding = true; }
    /// Chooses in all open panels.
    void answer(const std::optional<QString>& path);
    qsizetype openCount() const { return static_cast<qsizetype>(m_open.size()); }

    QStringList asked;
    FileKind lastKind = FileKind::PlainText;

private:
    QFuture<std::optional<QString>> chosen(FileKind kind);

    FileManager& m_files;
    std::optional<QString> m_chosen;
    std::vector<QPromise<std::optional<QString>>> m_open;
    bool m_isHolding = false;
    bool m_isShutDown = false;
};

} // namespace quorvane
