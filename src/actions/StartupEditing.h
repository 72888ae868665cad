#pragma once

#include "actions/ActionOutcome.h"
#include "startup/items/DiscoveredStartup.h"
#include "startup/items/WorkingStartup.h"

#include <QHash>
#include <QObject>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class ActionListener;
class ActionStage;
class MasterProfileState;
class SystemManager;
class Tasks;
class Turnstile;

/// What a user does in the startup editor, and what it shows beside the working copy. All of it changes the working copy alone;
/// nothing reaches the system before a review. While something runs or is open it changes nothing. Main thread.
class StartupEditing : public QObject {
    Q_OBJECT

public:
    struct Parts {
        ActionStage& stage;
        Turnstile& turnstile;
        SystemManager& system;
        MasterProfileState& workingCopy;
        Tasks& tasks;
    };
    explicit StartupEditing(const Parts& parts, QObject* parent = nullptr);

    // ---- What is found

    /// Called when the editor is shown.
    void load();
    /// "Refresh": looks anew.
    void refresh();
    /// Called when the system has changed. Who hasn't looked before needn't be shown anything.
    void readAnew();
    /// Somebody looks.
    bool isRefreshing() const { return m_isRefreshing; }
    /// By name.
    const QList<CloudSyncService>& detectedServices() const { return m_detectedServices; }
    /// Performance applications that aren't among the added ones.
    QList<StartupLaunchItem> suggestions() const;
    /// See startupSearchText: of items that were found it is known already.
    QString searchText(const StartupItem& item) const;
    /// "Review Changes" has something to show.
    bool canReview() const;

    // ---- What is decided

    /// Asks before a protected item is switched off.
    void switchItem(const QString& id, ActionListener& listener);
    void toggleHidden(const QString& id);
    void remove(const QString& id);
    void add(const StartupLaunchItem& application);
    /// "Add Application…"
    QCoro::Task<ActionOutcome> pickApplication(ActionListener& listener);
    /// "Clear Selection": asks when applications that were added would go.
    QCoro::Task<ActionOutcome> clearSelection(ActionListener& listener);
    void setServiceDisabled(CloudSyncService service, bool disabled);
    void setNetworkDisabled(bool disabled);

Q_SIGNALS:
    /// What is found, or that somebody looks.
    void changed();
    /// An application was to be added: there is a row of it now.
    void added(const QString& id);

private:
    enum class Refresh { UseCache, Force };
    /// What another thread makes of what was found.
    struct Prepared {
        WorkingStartup working;
        QList<CloudSyncService> services;
        QHash<QString, QString> searchTexts; ///< by identifier
    };
    static Prepared prepared(const StartupLayers& layers, const QStringList& cloudFolderTexts);

    QCoro::Task<void> discover(Refresh refresh);
    QCoro::Task<void> takeUp(DiscoveredStartup found, quint64 round);
    QCoro::Task<ActionOutcome> switchProtectedOff(const QString& id, ActionListener& listener);
    QStringList cloudFolderTexts() const;
    bool isIdle() const;

    Parts m_parts;
    bool m_isRefreshing = false;
    quint64 m_round = 0; ///< counts the discoveries: one that was overtaken shows nothing
    QList<CloudSyncService> m_detectedServices;
    QHash<QString, QString> m_searchTexts;
};

} // namespace quorvane
