#include "fakes/MemoryDisplays.h"

namespace quorvane {

MemoryDisplays::Connected& MemoryDisplays::plugIn(quint32 number, const QRectF& frame, double scale,
                                                  const QString& picture) {
    const Display display{number, QStringLiteral("Display %1").arg(number), frame, scale};
    connected.append({display, picture, std::nullopt});
    return connected.last();
}

QList<Display> MemoryDisplays::screens() const {
    QList<Display> list;
    for (const Connected& each : connected) {
        list.append(each.display);
    }
    return list;
}

std::optional<QString> MemoryDisplays::desktopPicture(const Display& display) const {
    for (const Connected& each : connected) {
        if (each.display == display) {
            return each.picture;
        }
    }
    return std::nullopt;
}

std::optional<QString> MemoryDisplays::setDesktopPicture(const Display& display, const QString& path) {
    calls.append(QStringLiteral("set %1 %2").arg(display.localizedName, path));
    for (Connected& each : connected) {
        if (each.display != display) {
            continue;
        }
        if (each.settingError) {
            return each.settingError;
        }
        each.picture = path;
        if (whenSet) {
            whenSet();
        }
        return std::nullopt;
    }
    return QStringLiteral("The display is not connected.");
}

QFuture<QImage> MemoryDisplays::loadPicture(const QString& path) {
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

} // namespace quorvane
