#pragma once

#include "simulator/Authorizer.h"

#include <QString>

#include <optional>

namespace quorvane {

/// The passwords that are typed into one authorization dialog: a wrong one is asked for again, the third is a refusal.
class PasswordAttempts {
public:
    /// @param password  that of the Mac's user
    explicit PasswordAttempts(QString password);

    /// What the dialog ends with; none while it asks again. Nothing is typed after the end.
    std::optional<macsim::Authorization> ending(const QString& typed);

private:
    QString m_password;
    int m_wrongOnes = 0;
};

} // namespace quorvane
