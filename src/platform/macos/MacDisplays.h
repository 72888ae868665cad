#pragma once

#include "platform/Displays.h"
#include "platform/macos/OpenAnswers.h"

namespace quorvane {

/// The displays by NSScreen, their desktop pictures by NSWorkspace, and picture files by ImageIO.
///
/// Of a display only the Space that is seen is read and set; the others keep their pictures. For a picture that moves by
/// itself, or that the system chooses, the system tells a still one.
class MacDisplays final : public Displays {
public:
    QList<Display> screens() const override;
    std::optional<QString> desktopPicture(const Display& display) const override;
    std::optional<QString> setDesktopPicture(const Display& display, const QString& path) override;
    QFuture<QImage> loadPicture(const QString& path) override;

private:
    OpenAnswers<QImage> m_pictures{QImage()};
};

} // namespace quorvane
