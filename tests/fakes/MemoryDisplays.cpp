#include "fakes/MemoryDisplays.h"

#include <utility>

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
        if (m_files.exists(path) && !m_drawn.contains(path)) {
            m_drawn.insert(path, m_files.read(path));
        }
        if (whenSet) {
            whenSet();
        }
        return std::nullopt;
    }
    return QStringLiteral("The display is not connected.");
}

MemoryDisplays::Observation::Observation(MemoryDisplays& observed, std::function<void(DesktopChange)> called)
    : handler(std::move(called))
    , m_observed(observed) {
    m_observed.m_observers.append(this);
}

MemoryDisplays::Observation::~Observation() {
    m_observed.m_observers.removeOne(this);
}

std::unique_ptr<NotificationObservation> MemoryDisplays::observe(std::function<void(DesktopChange)> handler) {
    return std::make_unique<Observation>(*this, std::move(handler));
}

void MemoryDisplays::tell(DesktopChange change) {
    const QList<Observation*> observers = m_observers;
    for (Observation* const observer : observers) {
        if (m_observers.contains(observer)) {
            const auto handler = observer->handler; // the observation may end in it
            handler(change);
        }
    }
}

QByteArray MemoryDisplays::drawnOn(const Connected& display) const {
    const QString path = display.picture.value_or(QString());
    const auto drawn = m_drawn.constFind(path);
    return drawn != m_drawn.cend() ? *drawn : m_files.read(path);
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
