#pragma once

#include <QFuture>
#include <QString>

#include <optional>

namespace quorvane {

class FileManager;

/// What is chosen in a panel.
enum class FileKind {
    PlainText,
    Profile,     ///< a profile's JSON file
    Application, ///< of those of the Mac; never saved
};

/// The panels in which people choose among their own files, modal to the program. Main thread.
class FilePanels {
public:
    FilePanels() = default;
    FilePanels(const FilePanels&) = delete;
    FilePanels& operator=(const FilePanels&) = delete;
    virtual ~FilePanels() = default;

    /// Finishes with the path that was chosen, while the event loop goes on; with none where the panel was cancelled. Whether a
    /// file that is there is to be replaced has been asked by then. The future is never cancelled and holds no exception.
    /// @param title  what is done: "Export Log"
    virtual QFuture<std::optional<QString>> save(const QString& title, const QString& suggestedName, FileKind kind) = 0;
    /// The same of something that is there.
    virtual QFuture<std::optional<QString>> open(const QString& title, FileKind kind) = 0;

    /// Reads and writes the files that were chosen. They may lie on another disk than Host::files; applications lie on that one.
    virtual FileManager& files() = 0;

    /// Takes away the panels that are open, as cancelled.
    virtual void cancelOpen() = 0;
    /// The same, and every later one is cancelled at once, without being shown; see CommandLauncher::shutDown.
    virtual void shutDown() = 0;
};

} // namespace quorvane
