#pragma once

#include "app/OpenFilePanels.h"
#include "platform/FilePanels.h"
#include "platform/portable/DiskFileManager.h"

namespace macsim {
class Mac;
}

namespace quorvane {

/// The panels of who sits before a simulated Mac: their files are those of the computer that it is simulated on, applications
/// are those of the Mac.
class FilePanelDialogs final : public FilePanels {
public:
    /// The Mac whose applications there are. It outlives the dialogs.
    void setMac(const macsim::Mac& mac) { m_mac = &mac; }

    QFuture<std::optional<QString>> save(const QString& title, const QString& suggestedName, FileKind kind) override;
    QFuture<std::optional<QString>> open(const QString& title, FileKind kind) override;
    FileManager& files() override { return m_disk; }
    void cancelOpen() override { m_open.cancelAll(); }
    void shutDown() override { m_open.shutDown(); }

private:
    QFuture<std::optional<QString>> pickApplication(const QString& title);

    DiskFileManager m_disk;
    const macsim::Mac* m_mac = nullptr;
    OpenFilePanels m_open;
};

} // namespace quorvane
