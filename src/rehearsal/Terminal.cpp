#include "rehearsal/Terminal.h"

#include "core/OneLine.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

namespace quorvane {

namespace {

/// What is behind the line ends that the program itself puts before a line.
QString terminalLine(const QString& line) {
    const auto begin = std::find_if(line.cbegin(), line.cend(), [](QChar character) { return character != u'\n'; });
    const qsizetype emptyLines = begin - line.cbegin();
    return line.left(emptyLines) + onOneLine(line.mid(emptyLines));
}

} // namespace

bool printLine(const QString& line) {
    errno = 0;
    const bool isPrinted =
        std::fprintf(stdout, "%s\n", terminalLine(line).toUtf8().constData()) >= 0 && std::fflush(stdout) == 0;
    return isPrinted || errno != EPIPE;
}

bool printReport(const QByteArray& report) {
    const auto size = static_cast<std::size_t>(report.size());
    return std::fwrite(report.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0;
}

void complain(const QString& text) {
    std::fprintf(stderr, "%s\n", onOneLine(text).toUtf8().constData());
}

} // namespace quorvane
