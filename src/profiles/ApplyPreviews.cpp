#include "profiles/ApplyPreviews.h"

#include "tweaks/TweakCatalogue.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

void appendUnlessEmpty(QList<ReviewSection>& sections, const ReviewSection& section) {
    if (!section.rows.isEmpty()) {
        sections.append(section);
    }
}

QList<ReviewSection::Row> rowsOf(const QList<StartupItem>& items) {
    QList<ReviewSection::Row> rows;
    for (const StartupItem& item : items) {
        rows.append({item.name, label(item.kind) + (item.isProtected ? u", protected: stays on"_s : QString())});
    }
    return rows;
}

QList<ReviewSection::Row> rowsOf(const QList<StartupLaunchItem>& items) {
    QList<ReviewSection::Row> rows;
    for (const StartupLaunchItem& item : items) {
        rows.append({item.name, {}});
    }
    return rows;
}

QList<ReviewSection::Row> rowsOf(const QList<CloudSyncService>& services) {
    QList<ReviewSection::Row> rows;
    for (const CloudSyncService service : services) {
        rows.append({displayName(service), u"login item and launch agents"_s});
    }
    return rows;
}

QList<ReviewSection::Row> disabledRows(const StartupChangePreview& preview) {
    QList<ReviewSection::Row> rows = rowsOf(preview.willDisable);
    if (preview.willDisableUnknownBackgroundItems) {
        rows.append({u"Background items that aren't permitted"_s, u"known when the password is given"_s});
    }
    return rows;
}

ReviewSection tweakSection(const QStringList& titles) {
    ReviewSection section{u"Will enable"_s, u"slider.horizontal.3"_s, {}};
    for (const QString& title : titles) {
        section.rows.append({title, {}});
    }
    return section;
}

} // namespace

QList<ReviewSection> reviewSections(const StartupChangePreview& preview) {
    QList<ReviewSection> sections;
    appendUnlessEmpty(sections, {u"Will disable at login"_s, u"minus.circle.fill"_s, disabledRows(preview)});
    appendUnlessEmpty(sections, {u"Will add at login"_s, u"plus.circle.fill"_s, rowsOf(preview.willAdd)});
    appendUnlessEmpty(sections,
                      {u"Will remove from login items"_s, u"trash.circle.fill"_s, rowsOf(preview.willRemove)});
    appendUnlessEmpty(sections, {u"Cloud sync disabled at login"_s, u"externaldrive.badge.xmark"_s,
                                 rowsOf(preview.disabledCloudSync)});
    if (preview.disableNetwork) {
        sections.append({u"Network interfaces will be disabled"_s, u"network.slash"_s, {}});
    }
    return sections;
}

QList<ReviewSection> reviewSections(const ProfileApplyPreview& preview) {
    ReviewSection tweaks = tweakSection(preview.enabledTweaks);
    if (tweaks.rows.isEmpty()) {
        tweaks.title = u"System tweaks"_s;
        tweaks.rows.append({u"Restore all performance tweaks to macOS defaults"_s, {}});
    } else if (tweaks.rows.size() < tweakCatalogue().size()) {
        tweaks.rows.append({u"Restore all other performance tweaks to macOS defaults"_s, {}});
    }
    return QList<ReviewSection>{tweaks} + reviewSections(preview.startup);
}

QList<ReviewSection> reviewSections(const TweaksApplyPreview& preview) {
    QList<ReviewSection> sections;
    appendUnlessEmpty(sections, tweakSection(preview.enabledTweaks));
    return sections + reviewSections(preview.startup);
}

} // namespace quorvane
