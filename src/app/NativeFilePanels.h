#pragma once

#include "app/OpenFilePanels.h"
#include "platform/FilePanels.h"

class QFileDialog;

namespace quorvane {

/// The system's own panels, by Qt; where a system has none, Qt's. On a Mac the panel of a program with a window is its sheet,
/// and what is chosen in it may be read and written whatever the folder: the system asks nobody again.
class NativeFilePanels final : public FilePanels {
public:
    /// @param files  those of the computer, applications included
    explicit NativeFilePanels(FileManager& files)
        : m_files(files) {}

    QFuture<std::optional<QString>> save(const QString& title, const QString& suggestedName, FileKind kind) override;
    QFuture<std::optional<QString>> open(const QString& title, FileKind kind) override;
    FileManager& files() override { return m_files; }
    void cancelOpen() override { m_open.cancelAll(); }
    void shutDown() override { m_open.shutDown(); }

private:
    FileManager& m_files;
    OpenFilePanels m_open;
};

} // namespace quorvane
