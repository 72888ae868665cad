#include "startup/launchd/PutAsideRecord.h"

#include "core/Json.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"

namespace quorvane {

using namespace Qt::StringLiterals;

PutAsideRecord::PutAsideRecord(FileManager& files, const Machine& machine)
    : m_files(files)
    , m_folder(machine.homeFolder() + u"/.quorvane"_s)
    , m_file(m_folder + u"/launch-items-put-aside.json"_s) {}

QSet<QString> PutAsideRecord::read() const {
    try {
        const QStringList paths = decodedValue<QList<QString>>(parseJson(m_files.read(m_file)));
        return {paths.begin(), paths.end()};
    } catch (const FileError&) {
        return {};
    } catch (const DecodingError&) {
        return {};
    }
}

void PutAsideRecord::write(const QSet<QString>& paths) {
    QStringList sorted(paths.begin(), paths.end());
    sorted.sort();
    if (!sorted.isEmpty()) {
        m_files.createFolders(m_folder);
        m_files.writeAtomically(m_file, jsonText(encodeJson(sorted)));
    } else if (m_files.status(m_file).kind != FileStatus::Kind::Missing) {
        m_files.remove(m_file);
    }
}

} // namespace quorvane
