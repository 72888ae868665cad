#pragma once

#include "platform/FilePanels.h"

namespace quorvane {

/// Where there is no screen for a panel: each is cancelled at once.
class AbsentFilePanels final : public FilePanels {
public:
    explicit AbsentFilePanels(FileManager& files)
        : m_files(files) {}

    QFuture<std::optional<QString>> save(const QString& /*title*/, const QString& /*suggestedName*/,
                                         FileKind /*kind*/) override {
        return QtFuture::makeReadyFuture(std::optional<QString>());
    }
    QFuture<std::optional<QString>> open(const QString& /*title*/, FileKind /*kind*/) override {
        return QtFuture::makeReadyFuture(std::optional<QString>());
    }
    FileManager& files() override { return m_files; }
    void cancelOpen() override {}
    void shutDown() override {}

private:
    FileManager& m_files;
};

} // namespace quorvane
