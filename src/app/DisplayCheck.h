#pragma once

#include <QByteArray>
#include <QString>

namespace quorvane {

/// What is told where no window can be opened: that there must be a display, and how to get one.
/// @param named  what the environment names as one: ":0", "wayland-0"; empty when it names none
QString noDisplayText(const QString& named);

/// Stands while the application object is made. Where Qt finds no display it would complain at length and abort; with this the
/// process says one clear text on its standard error and ends with status 2. What Qt has to say otherwise comes
/// when this goes, in its order.
class DisplayCheck {
public:
    DisplayCheck();
    DisplayCheck(const DisplayCheck&) = delete;
    DisplayCheck& operator=(const DisplayCheck&) = delete;
    ~DisplayCheck();
};

} // namespace quorvane
