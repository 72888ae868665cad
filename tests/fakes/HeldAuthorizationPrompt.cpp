#include "fakes/HeldAuthorizationPrompt.h"

#include <utility>

namespace quorvane {

QFuture<macsim::Authorization> HeldAuthorizationPrompt::ask(const QString& prompt) {
    Dialog* dialog = m_dialogs.emplace_back(std::make_unique<Dialog>()).get();
    dialog->prompt = prompt;
    dialog->promise.start();
    QObject::connect(&dialog->watcher, &QFutureWatcherBase::canceled, &dialog->watcher,
                     [this, dialog] { withdraw(dialog); });
    dialog->watcher.setFuture(dialog->promise.future());
    return dialog->promise.future();
}

QStringList HeldAuthorizationPrompt::open() const {
    QStringList prompts;
    for (const std::unique_ptr<Dialog>& dialog : m_dialogs) {
        if (!dialog->promise.isCanceled() && !dialog->watcher.isFinished()) {
            prompts.append(dialog->prompt);
        }
    }
    return prompts;
}

void HeldAuthorizationPrompt::answer(macsim::Authorization answer) {
    for (const std::unique_ptr<Dialog>& dialog : m_dialogs) {
        if (!dialog->watcher.isFinished()) {
            dialog->promise.addResult(answer);
            dialog->promise.finish();
        }
    }
}

void HeldAuthorizationPrompt::withdraw(const Dialog* dialog) {
    m_withdrawn.append(dialog->prompt);
}

} // namespace quorvane
