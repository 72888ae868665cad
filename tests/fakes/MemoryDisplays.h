#pragma once

#include "fakes/MemoryFileManager.h"
#include "platform/Displays.h"

#include <QPromise>
#include <QTimer>

#include <functional>
#include <memory>

namespace quorvane {

/// Displays in memory, over files in memory. There are none until a test plugs some in. A picture is loaded when the event
/// loop comes round.
class MemoryDisplays final : public Displays {
public:
    explicit MemoryDisplays(MemoryFileManager& files)
        : m_files(files) {}

    struct Connected {
        Display display;
        std::optional<QString> picture;
        std::optional<QString> settingError; ///< every set fails with it
    };

    QList<Connected> connected;
    QStringList calls; ///< "set {localizedName} {path}", "load {path}"
    std::function<QImage(const QByteArray& bytes)> decode = [](const QByteArray& bytes) {
        return QImage::fromData(bytes);
    };
    std::function<void()> whenSet; ///< called after a picture was set

    Connected& plugIn(quint32 number, const QRectF& frame, double scale, const QString& picture);
    QList<Display> screens() const override;
    std::optional<QString> desktopPicture(const Display& display) const override;
    std::optional<QString> setDesktopPicture(const Display& display, const QString& path) override;
    QFuture<QImage> loadPicture(const QString& path) override;

private:
    MemoryFileManager& m_files;
};

} // namespace quorvane
