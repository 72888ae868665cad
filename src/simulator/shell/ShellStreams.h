#pragma once

#include "simulator/Volume.h"

#include <QByteArray>
#include <QMap>
#include <QString>

#include <functional>
#include <memory>
#include <utility>

namespace macsim {

/// What a descriptor that is open for writing leads to.
class ShellOutput {
public:
    ShellOutput() = default;
    ShellOutput(const ShellOutput&) = delete;
    ShellOutput& operator=(const ShellOutput&) = delete;
    virtual ~ShellOutput() = default;

    /// Throws FileError.
    virtual void write(const QByteArray& bytes) = 0;
};

/// What the input leads to. A file is opened when it is redirected and read when a command runs: `cat <f >f`
/// finds it empty already. What one command has read, the next doesn't find again.
class ShellInput {
public:
    explicit ShellInput(QByteArray bytes)
        : m_bytes(std::move(bytes)) {}
    /// Throws FileError when the file can't be read.
    ShellInput(const Volume& volume, const QString& path);

    QByteArray take();
    void putBack(QByteArray rest) { m_bytes = std::move(rest); }

private:
    QByteArray m_bytes;
    std::function<QByteArray()> m_read; ///< until the first take of a file
};

/// Appends to bytes that outlive it.
class BufferOutput final : public ShellOutput {
public:
    explicit BufferOutput(QByteArray& buffer)
        : m_buffer(buffer) {}
    void write(const QByteArray& bytes) override { m_buffer += bytes; }

private:
    QByteArray& m_buffer;
};

/// Appends to a file that was made when the descriptor was opened.
class FileOutput final : public ShellOutput {
public:
    FileOutput(Volume volume, QString path)
        : m_volume(std::move(volume))
        , m_path(std::move(path)) {}
    void write(const QByteArray& bytes) override {
        if (!bytes.isEmpty()) {
            m_volume.append(m_path, bytes);
        }
    }

private:
    Volume m_volume;
    QString m_path;
};

/// "/dev/null"
class NullOutput final : public ShellOutput {
public:
    void write(const QByteArray&) override {}
};

/// The descriptors of a command, shared as on a real system by all the commands that inherit them.
struct ShellStreams {
    std::shared_ptr<ShellInput> input;
    QMap<int, std::shared_ptr<ShellOutput>> outputs; ///< 1 is the output, 2 the error; others as they were redirected

    /// Writes "sh: {message}" to the error stream; a failure there can't be told to anybody.
    void complain(const QString& message) const;
};

} // namespace macsim
