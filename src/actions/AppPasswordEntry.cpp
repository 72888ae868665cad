#include "actions/AppPasswordEntry.h"

#include <utility>

namespace quorvane {

AppPasswordEntry::AppPasswordEntry(AppPasswordSheetMode mode, std::optional<BiometryType> biometry, QObject* parent)
    : SheetModel(parent)
    , m_mode(mode)
    , m_biometry(biometry) {}

void AppPasswordEntry::submit(const Passwords& passwords) {
    if (!m_isVerifying) {
        give(Answer{false, passwords});
    }
}

void AppPasswordEntry::useFinger() {
    if (!m_isVerifying) {
        give(Answer{true, {}});
    }
}

QFuture<std::optional<AppPasswordEntry::Answer>> AppPasswordEntry::answer() {
    if (isOver()) {
        return QtFuture::makeReadyFuture(std::optional<Answer>());
    }
    m_answer.emplace().start();
    return m_answer->future();
}

void AppPasswordEntry::fail(const QString& error) {
    m_error = error;
    Q_EMIT changed();
}

void AppPasswordEntry::beginVerifying() {
    m_isVerifying = true;
    m_error.clear();
    Q_EMIT changed();
}

void AppPasswordEntry::endVerifying(const std::optional<QString>& password, const QString& error) {
    m_isVerifying = false;
    m_error = error;
    Q_EMIT changed();
    if (password) {
        Q_EMIT verified(*password);
    }
}

void AppPasswordEntry::give(const std::optional<Answer>& answer) {
    if (std::optional<QPromise<std::optional<Answer>>> waiting = std::exchange(m_answer, std::nullopt)) {
        waiting->addResult(answer);
        waiting->finish();
    }
}

} // namespace quorvane
