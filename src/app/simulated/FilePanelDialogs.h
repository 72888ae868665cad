#pragma once

#include "platform/FilePanels.h"
#include "platform/portable/DiskFileManager.h"

#include <QDialog>
#include <QList>
#include <QObject>
#include <QPointer>

#include <memory>

namespace macsim {
class Mac;
}

template <typename T>
class QPromise;

namespace quorvane {

/// The panels of who sits before a simulated Mac: their files are those of the computer that it is simulated on, applications
/// are those of the Mac.
class FilePanelDialogs final : public QObject, public FilePanels {
    Q_OBJECT

public:
    FilePanelDialogs() = default;
    ~FilePanelDialogs() override;

    /// The Mac whose applications there are. It outlives the dialogs.
    void setMac(const macsim::Mac& mac) { m_mac = &mac; }

    QFuture<std::optional<QString>> save(const QString& title, const QString& suggestedName, FileKind kind) override;
    QFuture<std::optional<QString>> open(const QString& title, FileKind kind) override;
    FileManager& files() override { return m_disk; }
    void cancelOpen() override;
    void shutDown() override;

private:
    using Choice = std::optional<QString>;
    QFuture<Choice> show(QDialog* dialog, const std::shared_ptr<QPromise<Choice>>& promise);
    QFuture<Choice> pickApplication(const QString& title);

    DiskFileManager m_disk;
    const macsim::Mac* m_mac = nullptr;
    QList<QPointer<QDialog>> m_dialogs;
    bool m_isShutDown = false;
};

} // namespace quorvane
