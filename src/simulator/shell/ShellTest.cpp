#include "simulator/shell/ShellTest.h"

#include <QHash>

#include <cerrno>
#include <functional>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

using FileTest = bool (*)(const QString& path, const ToolContext& context);

Volume::Kind kindBehindLinks(const QString& path, const ToolContext& context) {
    try {
        return context.volume.kind(context.volume.canonicalPath(path));
    } catch (const FileError&) {
        return Volume::Kind::Missing;
    }
}

bool isFile(const QString& path, const ToolContext& context) {
    const Volume::Kind kind = kindBehindLinks(path, context);
    return kind == Volume::Kind::File || kind == Volume::Kind::Tool;
}

bool isReadable(const QString& path, const ToolContext& context) {
    try {
        switch (kindBehindLinks(path, context)) {
        case Volume::Kind::Tool:
            return true; // a program can be read on a Mac; here its bytes are the simulator's
        case Volume::Kind::Folder:
            context.volume.list(path);
            return true;
        default:
            context.volume.read(path);
            return true;
        }
    } catch (const FileError&) {
        return false;
    }
}

/// Asked of a full disk, which refuses a write for the lack of space only where it would have been allowed.
bool isWritable(const QString& path, const ToolContext& context) {
    const Volume full = context.volume.full();
    if (!full.exists(path)) {
        return false;
    }
    try {
        full.write(full.isFolder(path) ? path + u"/.shell-test-w"_s : path, {});
        return true; // "/dev/null"
    } catch (const FileError& error) {
        return error.errorNumber() == ENOSPC;
    }
}

bool isExecutable(const QString& path, const ToolContext& context) {
    return context.volume.isFolder(path) || kindBehindLinks(path, context) == Volume::Kind::Tool;
}

bool isNotEmpty(const QString& path, const ToolContext& context) {
    return context.volume.exists(path) && context.volume.size(path) > 0;
}

FileTest findFileTest(const QString& name) {
    static const QHash<QString, FileTest> kTests{
        {u"-e"_s,
         [](const QString& path, const ToolContext& context) { return context.volume.exists(path); }},
        {u"-d"_s,
         [](const QString& path, const ToolContext& context) { return context.volume.isFolder(path); }},
        {u"-L"_s, [](const QString& path,
                     const ToolContext& context) { return context.volume.kind(path) == Volume::Kind::Link; }},
        {u"-f"_s, isFile},
        {u"-r"_s, isReadable},
        {u"-w"_s, isWritable},
        {u"-x"_s, isExecutable},
        {u"-s"_s, isNotEmpty},
    };
    return kTests.value(name, nullptr);
}

using Comparison = bool (*)(qint64 left, qint64 right);

Comparison findComparison(const QString& name) {
    static const QHash<QString, Comparison> kComparisons{
        {u"-eq"_s, [](qint64 left, qint64 right) { return left == right; }},
        {u"-ne"_s, [](qint64 left, qint64 right) { return left != right; }},
        {u"-lt"_s, [](qint64 left, qint64 right) { return left < right; }},
        {u"-le"_s, [](qint64 left, qint64 right) { return left <= right; }},
        {u"-gt"_s, [](qint64 left, qint64 right) { return left > right; }},
        {u"-ge"_s, [](qint64 left, qint64 right) { return left >= right; }},
    };
    return kComparisons.value(name, nullptr);
}

qint64 number(const QString& text) {
    bool isNumber = false;
    const qint64 value = text.trimmed().toLongLong(&isNumber);
    if (!isNumber) {
        throw ShellTestError(text + u": integer expression expected"_s);
    }
    return value;
}

bool testUnary(const QString& name, const QString& operand, const ToolContext& context) {
    if (name == u"-n"_s || name == u"-z"_s) {
        return operand.isEmpty() == (name == u"-z"_s);
    }
    if (const FileTest test = findFileTest(name)) {
        return test(context.absolutePath(operand), context);
    }
    throw ShellTestError(name + u": unary operator expected"_s);
}

bool isBinaryOperator(const QString& name) {
    return name == u"="_s || name == u"!="_s || findComparison(name);
}

bool testBinary(const QString& left, const QString& name, const QString& right) {
    if (const Comparison comparison = findComparison(name)) {
        return comparison(number(left), number(right));
    }
    return (left == right) == (name == u"="_s);
}

} // namespace

bool isShellTestTrue(const QStringList& operands, const ToolContext& context) {
    const bool startsWithNot = operands.value(0) == u"!"_s;
    if (operands.size() < 2) {
        return !operands.value(0).isEmpty();
    }
    if (operands.size() == 3 && isBinaryOperator(operands[1])) {
        return testBinary(operands[0], operands[1], operands[2]);
    }
    if (operands.size() <= 4 && startsWithNot) {
        return !isShellTestTrue(operands.mid(1), context);
    }
    if (operands.size() == 2) {
        return testUnary(operands[0], operands[1], context);
    }
    throw ShellTestError(operands.size() == 3 ? operands[1] + u": binary operator expected"_s
                                              : u"too many arguments"_s);
}

} // namespace macsim
