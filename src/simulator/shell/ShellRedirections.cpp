#include "simulator/shell/ShellRedirections.h"

#include <cerrno>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

using Kind = ShellRedirection::Kind;

std::shared_ptr<ShellInput> openInput(const QString& path, const Volume& volume) {
    const bool isNull = path == u"/dev/null"_s;
    return isNull ? std::make_shared<ShellInput>(QByteArray()) : std::make_shared<ShellInput>(volume, path);
}

std::shared_ptr<ShellOutput> openOutput(Kind kind, const QString& path, const Volume& volume) {
    if (path == u"/dev/null"_s) {
        return std::make_shared<NullOutput>();
    }
    if (kind == Kind::Write) {
        volume.write(path, {});
    } else {
        volume.append(path, {}); // makes the file, or shows that it can't be written
    }
    return std::make_shared<FileOutput>(volume, path);
}

void duplicate(ShellStreams& streams, const ShellRedirection& redirection) {
    const std::shared_ptr<ShellOutput> output = streams.outputs.value(redirection.source);
    if (!output) {
        throw FileError(EBADF, QString::number(redirection.source));
    }
    streams.outputs[redirection.descriptor] = output;
}

} // namespace

void redirect(ShellStreams& streams, const ShellRedirection& redirection, const QString& path,
              const ToolContext& context) {
    if (redirection.kind == Kind::Duplicate) {
        duplicate(streams, redirection);
        return;
    }
    try {
        const QString absolute = context.absolutePath(path);
        if (redirection.kind == Kind::Read) {
            streams.input = openInput(absolute, context.volume);
        } else {
            streams.outputs[redirection.descriptor] = openOutput(redirection.kind, absolute, context.volume);
        }
    } catch (const FileError& error) {
        throw FileError(error.errorNumber(), path);
    }
}

} // namespace macsim
