#include "actions/ProfileChanges.h"

#include "actions/ActionTexts.h"
#include "actions/ActiveProfile.h"
#include "actions/SavedProfiles.h"
#include "core/UserDefaultKeys.h"
#include "platform/UserDefaults.h"
#include "profiles/MasterProfileState.h"
#include "profiles/ProfileLabel.h"
#include "system/SystemManager.h"

#include <QCoroFuture>
#include <QCoroTask>
#include <QHash>

#include <algorithm>

namespace quorvane {

namespace {

/// By their identity. A folder may hold two files of one profile: the newest, which is listed first, is meant.
QHash<QUuid, UnifiedProfile> byId(const QList<UnifiedProfile>& profiles) {
    QHash<QUuid, UnifiedProfile> table;
    for (const UnifiedProfile& profile : profiles) {
        if (!table.contains(profile.id)) {
            table.insert(profile.id, profile);
        }
    }
    return table;
}

} // namespace

QCoro::Task<void> ProfileChanges::followSave(std::optional<UnifiedProfile> before, UnifiedProfile stored) {
    Successors successors;
    if (before) {
        successors.insert(before->name, {*before, stored});
    }
    const std::optional<QString> label = newName(successors, kWallpaperProfileName);
    takeAlong(successors);
    m_parts.workingCopy.load(stored);
    m_parts.saved.tellChanged();
    co_await m_parts.saved.list();
    co_await showTheChange(label);
}

QCoro::Task<std::optional<Alert>> ProfileChanges::questionBeforeArrival(QList<UnifiedProfile> arriving,
                                                                        QString source) {
    m_parts.saved.readAnew(); // others write into the folder, too
    const ProfileListing listing = co_await m_parts.saved.list();
    const QStringList names = namesReplacedBy(arriving, listing.profiles);
    std::optional<Alert> question;
    if (!names.isEmpty()) {
        question = restoreQuestion(names, source);
    }
    co_return question;
}

QCoro::Task<void> ProfileChanges::followArrival(QList<UnifiedProfile> before) {
    m_parts.saved.tellChanged();
    const ProfileListing listing = co_await m_parts.saved.list();
    const QHash<QUuid, UnifiedProfile> now = byId(listing.profiles);
    Successors successors;
    for (const UnifiedProfile& profile : before) {
        const auto found = now.constFind(profile.id);
        if (found != now.cend() && !successors.contains(profile.name)) {
            successors.insert(profile.name, {profile, *found});
        }
    }
    const std::optional<QString> label = newName(successors, kWallpaperProfileName);
    takeAlong(successors);
    loadAnew(listing.profiles);
    co_await showTheChange(label);
}

/// @param label  what the desktop is to show from now on; none where that stays
QCoro::Task<void> ProfileChanges::showTheChange(std::optional<QString> label) {
    m_parts.active.update();
    if (label) {
        co_await m_parts.label.refreshForProfile(*label);
    }
}

/// What was found on this Mac and what was applied last is still the same profile, but what was verified of other contents is
/// verified no more. Each goes by the names as they were: two profiles may have exchanged theirs.
void ProfileChanges::takeAlong(const Successors& successors) {
    const std::optional<SystemConfigurationMatch>& match = m_parts.system.systemMatch();
    const auto matched = successors.constFind(match ? match->name : QString());
    if (matched != successors.cend() && !matched->before.hasSameContent(matched->now)) {
        m_parts.system.forgetVerification(matched->before.name, matched->now.name);
    }
    if (const auto renamed = newName(successors, kQuorvaneLastAppliedProfileName)) {
        m_parts.defaults.setString(kQuorvaneLastAppliedProfileName, *renamed);
    }
}

/// None where the profile whose name is stored there is called so still.
std::optional<QString> ProfileChanges::newName(const Successors& successors, const QString& key) const {
    const auto named = successors.constFind(m_parts.defaults.string(key).value_or(QString()));
    const bool isRenamed = named != successors.cend() && named->before.name != named->now.name;
    return isRenamed ? std::optional(named->now.name) : std::nullopt;
}

void ProfileChanges::loadAnew(const QList<UnifiedProfile>& saved) {
    const std::optional<UnifiedProfile>& loaded = m_parts.workingCopy.currentProfile();
    if (!loaded || m_parts.workingCopy.isEdited()) {
        return;
    }
    const auto now = std::find(saved.cbegin(), saved.cend(), *loaded);
    if (now != saved.cend() && !now->hasSameContent(*loaded)) {
        m_parts.workingCopy.load(UnifiedProfile(*now));
    }
}

QStringList namesReplacedBy(const QList<UnifiedProfile>& arriving, const QList<UnifiedProfile>& saved) {
    const QHash<QUuid, UnifiedProfile> others = byId(arriving);
    QStringList names;
    for (const UnifiedProfile& profile : saved) {
        const auto other = others.constFind(profile.id);
        if (other != others.cend() && !other->hasSameContent(profile)) {
            names.append(profile.name);
        }
    }
    return names;
}

} // namespace quorvane
