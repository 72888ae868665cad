#include "simulator/shell/ShellRedirectionReader.h"

#include "simulator/shell/ShellParser.h"

#include <optional>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

using Kind = ShellRedirection::Kind;

constexpr int kMaximumDescriptor = 255; // what a process may open on macOS

QString takeDigits(ShellCursor& cursor) {
    QString digits;
    while (cursor.look() >= u'0' && cursor.look() <= u'9') {
        digits += cursor.take();
    }
    return digits;
}

std::optional<int> readDescriptor(ShellCursor& cursor) {
    const QString digits = takeDigits(cursor);
    if (digits.isEmpty()) {
        return {};
    }
    bool isNumber = false;
    const int descriptor = digits.toInt(&isNumber);
    if (!isNumber || descriptor > kMaximumDescriptor) {
        throw ShellSyntaxError::notSupported(digits, cursor.line());
    }
    return descriptor;
}

/// ">&-" closes and ">&name" redirects both streams in the real shell; ">&0" could never be written to.
int readDuplicateSource(ShellCursor& cursor) {
    cursor.skipBlanks();
    const int source = readDescriptor(cursor).value_or(0);
    if (source == 0 || !endsShellWord(cursor.look())) {
        throw ShellSyntaxError::notSupported(u">&"_s, cursor.line());
    }
    return source;
}

} // namespace

bool isAtShellRedirection(ShellCursor cursor) {
    takeDigits(cursor);
    return cursor.look() == u'<' || cursor.look() == u'>';
}

ShellRedirection readShellRedirectionOperator(ShellCursor& cursor) {
    const std::optional<int> descriptor = readDescriptor(cursor);
    for (const QStringView unsupported : {u"<<", u"<&", u"<>", u"<(", u">|", u">("}) {
        ShellSyntaxError::refuse(cursor, unsupported);
    }
    const QChar direction = cursor.take();
    const bool isInput = direction == u'<';
    if (descriptor && isInput != (*descriptor == 0)) {
        throw ShellSyntaxError::notSupported(QString::number(*descriptor) + direction, cursor.line());
    }
    if (isInput) {
        return {Kind::Read, 0, 0, {}};
    }
    if (cursor.takeIf(u'&')) {
        return {Kind::Duplicate, descriptor.value_or(1), readDuplicateSource(cursor), {}};
    }
    return {cursor.takeIf(u'>') ? Kind::Append : Kind::Write, descriptor.value_or(1), 0, {}};
}

} // namespace macsim
