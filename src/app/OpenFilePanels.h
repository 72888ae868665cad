#pragma once

#include <QDialog>
#include <QFuture>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QPromise>

#include <memory>
#include <optional>

namespace quorvane {

/// The dialogs in which files are being chosen, each with whoever waits for the path (FilePanels). A dialog that ends without
/// one, by whatever end, was cancelled.
class OpenFilePanels final : public QObject {
    Q_OBJECT

public:
    using Choice = std::optional<QString>;

    OpenFilePanels() = default;
    ~OpenFilePanels() override;

    /// Opens a dialog, which goes when it has ended.
    /// @param chosen  its signal with the path, which comes before it ends
    /// @param open    how it opens
    template <typename Dialog>
    QFuture<Choice> show(Dialog* dialog, void (Dialog::*chosen)(const QString& path), void (*open)(Dialog& dialog)) {
        const auto promise = std::make_shared<QPromise<Choice>>();
        promise->start();
        connect(dialog, chosen, this, [promise](const QString& path) { promise->addResult(path); });
        follow(dialog, promise);
        if (!m_isShutDown) {
            open(*dialog);
        }
        return promise->future();
    }
    void cancelAll();
    /// The same, and each later one is cancelled at once, without being shown.
    void shutDown();

private:
    void follow(QDialog* dialog, const std::shared_ptr<QPromise<Choice>>& promise);

    QList<QPointer<QDialog>> m_dialogs;
    bool m_isShutDown = false;
};

} // namespace quorvane
