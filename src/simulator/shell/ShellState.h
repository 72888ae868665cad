#pragma once

#include <QHash>
#include <QMap>
#include <QString>

#include <optional>

namespace macsim {

/// What a shell carries from command to command; a subshell works on a copy. A variable stands in one place:
/// in the environment, which commands inherit, when it was there from the start, else among the shell's own.
class ShellState {
public:
    /// @param environment    what the shell was started with
    /// @param workingFolder  absolute
    ShellState(QMap<QString, QString> environment, const QString& workingFolder);

    std::optional<QString> value(const QString& name) const;
    void assign(const QString& name, const QString& value);
    const QMap<QString, QString>& environment() const { return m_environment; }
    void exportValue(const QString& name, const QString& value) { m_environment[name] = value; }
    /// Gives a name in the environment back what it had there, or takes it out.
    void restoreExported(const QString& name, const QMap<QString, QString>& before);

    QString workingFolder() const { return m_workingFolder; }
    /// Also sets PWD and OLDPWD.
    void enterFolder(const QString& path);

    int lastStatus = 0;

private:
    QMap<QString, QString> m_environment;
    QHash<QString, QString> m_variables;
    QString m_workingFolder;
};

} // namespace macsim
