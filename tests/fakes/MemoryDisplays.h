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

    Connected& plugIn(quint32 number, const QRectF& frame, double scale, const QString& picture) {
        const Display display{number, QStringLiteral("Display %1").arg(number), frame, scale};
        connected.append({display, picture, std::nullopt});
        return connected.last();
    }

    QList<Display> screens() const override {
        QList<Display> list;
        for (const Connected& each : connected)
            list.append(each.display);
        return list;
    }
    std::optional<QString> desktopPicture(const Display& display) const override {
        for (const Connected& each : connected) {
            if (each.display == display)
                return each.picture;
        }
        return std::nullopt;
    }
    std::optional<QString> setDesktopPicture(const Display& display, const QString& path) override {
        calls.append(QStringLiteral("set %1 %2").arg(display.localizedName, path));
        for (Connected& each : connected) {
            if (each.display != display)
                continue;
            if (each.settingError)
                return each.settingError;
            each.picture = path;
            if (whenSet)
                whenSet();
            return std::nullopt;
        }
        return QStringLiteral("The display is not connected.");
    }
    QFuture<QImage> loadPicture(const QString& path) override {
        calls.append(QStringLiteral("load ") + path);
        QImage picture;
        try {
            picture = decode(m_files.read(path));
        } catch (const FileError&) {
            picture = QImage();
        }
        const auto promise = std::make_shared<QPromise<QImage>>();
        promise->start();
        QTimer::singleShot(0, [promise, picture] {
            promise->addResult(picture);
            promise->finish();
        });
        return promise->future();
    }

private:
    MemoryFileManager& m_files;
};

} // namespace quorvane
