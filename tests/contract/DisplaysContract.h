#pragma once

#include "contract/Subject.h"
#include "fakes/EventLoop.h"
#include "fakes/Pictures.h"
#include "platform/Displays.h"

namespace quorvane {

using namespace Qt::StringLiterals;

/// Displays, and a folder for pictures.
class DisplaysSubject {
public:
    virtual ~DisplaysSubject() = default;
    virtual Displays& displays() = 0;
    virtual QString folder() const = 0;
    virtual void addFile(const QString& path, const QByteArray& bytes) = 0;
};

/// What every system's displays promise, whichever are connected.
class DisplaysContract : public ContractTest<DisplaysSubject> {
protected:
    DisplaysContract() { subject->addFile(red, pngFile(plainPicture({20, 10}, Qt::red))); }
    QString path(const QString& name) const { return subject->folder() + u'/' + name; }
    QImage load(const QString& file) {
        QFuture<QImage> picture = displays.loadPicture(file);
        processEventsUntil([&picture] { return picture.isFinished(); });
        return picture.result();
    }

    Displays& displays = subject->displays();
    const QString red = path(u"red.png"_s);
};

/// A built-in display that shows blue.png, and a monitor without a number of which the system doesn't say what it shows.
class TwoDisplaysSubject : public DisplaysSubject {
public:
    virtual void unplugBuiltIn() = 0;
    virtual void refuse(const QString& error) = 0;
    virtual void showAnotherSpace() = 0;
    virtual void wake() = 0;
    /// Whether the built-in one draws its file as it is now.
    virtual bool drawsTheFileOfNow() = 0;
    QString blue() const { return folder() + u"/blue.png"_s; }
};

/// What is on the desktops of displays that a test connects and unplugs.
class TwoDisplaysContract : public ContractTest<TwoDisplaysSubject> {
protected:
    TwoDisplaysContract() {
        subject->addFile(blue, pngFile(plainPicture({20, 10}, Qt::blue)));
        subject->addFile(red, pngFile(plainPicture({20, 10}, Qt::red)));
    }
    Display builtIn() const { return displays.screens().at(0); }
    Display monitor() const { return displays.screens().at(1); }

    Displays& displays = subject->displays();
    const QString blue = subject->blue();
    const QString red = subject->folder() + u"/red.png"_s;
};

} // namespace quorvane
