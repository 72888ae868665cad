#pragma once

#include "profiles/ProfileManager.h"

#include <exception>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class Clock;

/// What kept profiles from being taken into the store. Those that came before it are saved.
class ProfileImportError : public std::exception {
public:
    explicit ProfileImportError(const QString& text)
        : m_text(text.toUtf8()) {}

    QString message() const { return QString::fromUtf8(m_text); }
    const char* what() const noexcept override { return m_text.constData(); }

private:
    QByteArray m_text;
};

/// ProfileManager::Import in turns, so that a window stays live. The store outlives the task. Throws ProfileImportError, also
/// when the program quits before the end: what is missing would count as saved.
QCoro::Task<ProfileImportResult> importInTurns(Clock& clock, ProfileManager& store, QList<UnifiedProfile> profiles);

} // namespace quorvane
