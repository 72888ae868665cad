#include "simulator/shell/ShellStreams.h"

namespace macsim {

using namespace Qt::StringLiterals;

ShellInput::ShellInput(const Volume& volume, const QString& path)
    : m_read([volume, path] { return volume.read(path); }) {
    m_read();
}

QByteArray ShellInput::take() {
    if (const auto read = std::exchange(m_read, nullptr)) {
        try {
            return read();
        } catch (const FileError&) {
            return {}; // it was there when it was opened, and is gone
        }
    }
    return std::exchange(m_bytes, {});
}

void ShellStreams::complain(const QString& message) const {
    try {
        outputs[2]->write((u"sh: "_s + message + u'\n').toUtf8());
    } catch (const FileError&) {
        return;
    }
}

} // namespace macsim
