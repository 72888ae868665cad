#pragma once

#include <QMap>
#include <QString>

namespace macsim {

class StateStore;

// What `launchctl setenv` gives to every program that is started from the user's session: {"PATH": "/opt/bin:/bin", …}, the
// subject "sessionEnvironment".

QMap<QString, QString> sessionEnvironment(const StateStore& state);
void setSessionVariable(const StateStore& state, const QString& name, const QString& value);
void unsetSessionVariable(const StateStore& state, const QString& name);

} // namespace macsim
