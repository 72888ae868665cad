#include "platform/portable/QuitSignals.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace quorvane {

namespace {

// A signal handler may do little more than write; the other end is read in the event loop.
std::array<int, 2> pipeEnds{-1, -1};

void handleSignal(int) {
    const int errorBefore = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], &byte, 1);
    errno = errorBefore;
}

} // namespace

QuitSignals::QuitSignals(OutputReader reader, QObject* parent)
    : QObject(parent) {
    if (::pipe(pipeEnds.data()) != 0) {
        return;
    }
    for (const int end : pipeEnds) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    m_notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        if (::read(pipeEnds[0], &byte, 1) == 1) {
            Q_EMIT quitRequested();
        }
    });
    std::signal(SIGINT, handleSignal);
    std::signal(SIGTERM, handleSignal);
    if (std::signal(SIGHUP, handleSignal) == SIG_IGN) {
        std::signal(SIGHUP, SIG_IGN); // by nohup: whoever started this wants it to outlive the terminal
    }
    std::signal(SIGPIPE, reader == OutputReader::Needed ? handleSignal : SIG_IGN);
}

} // namespace quorvane
