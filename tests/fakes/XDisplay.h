#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRect>
#include <QSize>
#include <QStringList>

#include <memory>

namespace quorvane {

/// An X display of the test's own, without a screen, with a window manager; and a status area where one is wanted. No session
/// bus. All of it ends with this object.
class XDisplay {
public:
    explicit XDisplay(const QSize& screen = {1400, 1000});
    XDisplay(const XDisplay&) = delete;
    XDisplay& operator=(const XDisplay&) = delete;
    ~XDisplay();

    /// For programs that are to use it.
    QProcessEnvironment environment() const;
    /// This process uses it from now on. To be called before there is an application object.
    void use();
    /// The one that this process uses.
    static XDisplay& used();

    void openStatusArea();
    void closeStatusArea();

    /// What a user does with mouse and keys: the arguments of xdotool.
    /// @return what it prints
    QString act(const QStringList& arguments) const;
    /// @param window  its number, as text
    QRect placeOf(const QString& window) const;

private:
    void waitForWindowManager() const;
    std::unique_ptr<QProcess> started(const QString& program, const QStringList& arguments) const;
    static void end(QProcess& process);

    QProcess m_server;
    QByteArray m_name;
    std::unique_ptr<QProcess> m_windowManager;
    std::unique_ptr<QProcess> m_statusArea;
};

} // namespace quorvane
