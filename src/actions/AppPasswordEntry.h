#pragma once

#include "actions/SheetModel.h"
#include "lock/AppPasswordSheetMode.h"
#include "platform/Biometrics.h"

#include <QFuture>
#include <QPromise>
#include <QString>

#include <optional>

namespace quorvane {

/// An app password that is set, changed or taken off, as its sheet shows it. It keeps nothing of what is typed.
class AppPasswordEntry final : public SheetModel {
    Q_OBJECT

public:
    /// What the user has typed; the fields that the sheet hasn't are empty.
    struct Passwords {
        QString current;
        QString newPassword;
        QString confirmation;
    };
    /// What the user wants; none when it is over.
    struct Answer {
        bool asksForFinger = false; ///< in place of typing the current password
        Passwords passwords;
    };

    /// @param biometry  none where no finger can stand in for the current password
    AppPasswordEntry(AppPasswordSheetMode mode, std::optional<BiometryType> biometry, QObject* parent = nullptr);

    AppPasswordSheetMode mode() const { return m_mode; }
    std::optional<BiometryType> biometry() const { return m_biometry; }
    /// What went wrong; empty where nothing did.
    const QString& error() const { return m_error; }
    /// While a finger is asked for.
    bool isVerifying() const { return m_isVerifying; }

    // ---- What the user does

    void submit(const Passwords& passwords);
    void useFinger();

    // ---- What comes of it

    /// Finishes at the next thing that the user does.
    QFuture<std::optional<Answer>> answer();
    void fail(const QString& error);
    void beginVerifying();
    /// @param password  what the finger has released
    void endVerifying(const std::optional<QString>& password, const QString& error);

Q_SIGNALS:
    /// The finger has released the current password.
    void verified(const QString& password);

protected:
    void settle() override { give(std::nullopt); }

private:
    void give(const std::optional<Answer>& answer);

    AppPasswordSheetMode m_mode;
    std::optional<BiometryType> m_biometry;
    QString m_error;
    bool m_isVerifying = false;
    std::optional<QPromise<std::optional<Answer>>> m_answer; ///< while somebody waits for it
};

} // namespace quorvane
