#include "maintenance/FolderEmptying.h"

#include <utility>

namespace quorvane {

FolderEmptying::FolderEmptying(FileManager& files, const QString& folder, IsSpared isSpared, Report report)
    : m_files(files)
    , m_folder(folder)
    , m_isSpared(std::move(isSpared))
    , m_report(std::move(report))
    , m_entries(files.entries(folder)) {}

bool FolderEmptying::step() {
    if (m_removal) {
        removeFurther();
        return true;
    }
    const std::optional<QString> name = m_entries->next();
    if (name && !m_isSpared(*name)) {
        m_name = *name;
        m_removal.emplace(m_files, m_folder + u'/' + m_name);
    }
    return name.has_value();
}

void FolderEmptying::removeFurther() {
    std::optional<QString> error;
    try {
        if (m_removal->step()) {
            return;
        }
    } catch (const FileError& problem) {
        error = problem.message();
    }
    m_removal.reset();
    m_report(m_name, error);
}

} // namespace quorvane
