#include "simulator/StateStore.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <fcntl.h>
#include <stdexcept>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

/// Holds a subject's lock. The lock is a file of its own, because the state file is replaced at every write.
class SubjectLock {
public:
    explicit SubjectLock(const QString& path)
        : m_descriptor(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0644)) {
        if (m_descriptor < 0 || ::flock(m_descriptor, LOCK_EX) != 0) {
            throw std::runtime_error("cannot lock " + path.toStdString());
        }
    }
    SubjectLock(const SubjectLock&) = delete;
    SubjectLock& operator=(const SubjectLock&) = delete;
    ~SubjectLock() { ::close(m_descriptor); }

private:
    int m_descriptor;
};

QString stateFile(const QString& folder, const char* subject) {
    return folder + u'/' + QString::fromLatin1(subject) + u".json"_s;
}

} // namespace

StateStore::StateStore(QString hostFolder)
    : m_hostFolder(std::move(hostFolder)) {}

Json StateStore::read(const char* subject) const {
    QFile file(stateFile(m_hostFolder, subject));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray bytes = file.readAll();
    return Json::parse(bytes.cbegin(), bytes.cend());
}

// Every write puts a new file in place, with another inode than that of the file before it; its time and size tell apart
// those of the same inode.
QByteArray StateStore::revision(const char* subject) const {
    const QString path = stateFile(m_hostFolder, subject);
    struct stat file = {};
    if (::stat(QFile::encodeName(path).constData(), &file) != 0) {
        return {};
    }
    const qint64 changed = QFileInfo(path).lastModified().toMSecsSinceEpoch();
    return QByteArray::number(quint64{file.st_ino}) + ' ' + QByteArray::number(changed) + ' ' +
           QByteArray::number(qint64{file.st_size});
}

void StateStore::update(const char* subject, const std::function<void(Json&)>& change) const {
    const SubjectLock lock(m_hostFolder + u'/' + QString::fromLatin1(subject) + u".lock"_s);
    const Json before = read(subject);
    Json state = before;
    change(state);
    if (state == before) {
        return;
    }
    QSaveFile file(stateFile(m_hostFolder, subject));
    const QByteArray text = QByteArray::fromStdString(state.dump(1) + '\n');
    // What the disk refuses at the last flush isn't known to `commit`, which would put half a file in place.
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush();
    if (!isWritten || !file.commit()) {
        throw std::runtime_error("cannot write " + file.fileName().toStdString());
    }
}

} // namespace macsim
