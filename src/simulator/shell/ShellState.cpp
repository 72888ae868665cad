#include "simulator/shell/ShellState.h"

#include <utility>

namespace macsim {

using namespace Qt::StringLiterals;

ShellState::ShellState(QMap<QString, QString> environment, const QString& workingFolder)
    : m_environment(std::move(environment))
    , m_workingFolder(workingFolder) {
    exportValue(u"PWD"_s, workingFolder);
}

std::optional<QString> ShellState::value(const QString& name) const {
    if (const auto exported = m_environment.constFind(name); exported != m_environment.constEnd()) {
        return *exported;
    }
    const auto own = m_variables.constFind(name);
    return own == m_variables.constEnd() ? std::nullopt : std::optional(*own);
}

void ShellState::assign(const QString& name, const QString& value) {
    if (m_environment.contains(name)) {
        exportValue(name, value);
    } else {
        m_variables[name] = value;
    }
}

void ShellState::restoreExported(const QString& name, const QMap<QString, QString>& before) {
    if (before.contains(name)) {
        exportValue(name, before[name]);
    } else {
        m_environment.remove(name);
    }
}

void ShellState::enterFolder(const QString& path) {
    exportValue(u"OLDPWD"_s, m_workingFolder);
    m_workingFolder = path;
    exportValue(u"PWD"_s, path);
}

} // namespace macsim
