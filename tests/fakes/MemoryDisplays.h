#pragma once

#include "fakes/MemoryFileManager.h"
#include "platform/Displays.h"

#include <QHash>
#include <QPromise>
#include <QTimer>

#include <functional>
#include <memory>

namespace quorvane {

/// Displays in memory, over files in memory. There are none until a test plugs some in. A picture is loaded when the event
/// loop comes round. As on a Mac, a path that was set before is drawn as it was then, on every display.
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

    std::unique_ptr<NotificationObservation> observe(std::function<void(DesktopChange)> handler) override;

    /// Calls those who observe now.
    void tell(DesktopChange change);
    qsizetype observerCount() const { return m_observers.size(); }
    /// What a display draws: the content of the file that it shows, or what that was when it was first set.
    QByteArray drawnOn(const Connected& display) const;
    /// As if nothing had ever been set.
    void forgetWhatWasDrawn() { m_drawn.clear(); }

private:
    struct Observation final : NotificationObservation {
        Observation(MemoryDisplays& observed, std::function<void(DesktopChange)> called);
        ~Observation() override;

        std::function<void(DesktopChange)> handler;

    private:
        MemoryDisplays& m_observed;
    };

    MemoryFileManager& m_files;
    QList<Observation*> m_observers;
    QHash<QString, QByteArray> m_drawn; ///< by the paths that were set
};

} // namespace quorvane
