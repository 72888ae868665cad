#include "profiles/ApplyPreviews.h"

#include "core/OneLine.h"
#include "tweaks/TweakCatalogue.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

void appendUnlessEmpty(QList<ReviewSection>& sections, const ReviewSection& section) {
    if (!section.rows.isEmpty()) {
        sections.append(section);
    }
}

QString detailOf(const StartupItem& item, const StartupChangePreview& preview) {
    QString detail = label(item.kind);
    if (item.isProtected) {
        detail += u", protected: stays on"_s;
    }
    if (preview.byHand.contains(item.id)) {
        detail += u", turn off in System Settings"_s;
    }
    if (preview.onAgain.contains(item.id)) {
        detail += u", on again since it was switched off"_s;
    }
    return detail;
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
    QList<ReviewSection::Row> rows;
    for (const StartupItem& item : preview.willDisable) {
        rows.append({item.name, detailOf(item, preview)});
    }
    if (preview.willDisableUnknownBackgroundItems) {
        rows.append({u"Background items that aren't permitted"_s, u"known when the password is given"_s});
    }
    return rows;
}

QList<ReviewSection::Row> unreadRows(const StartupChangePreview& preview) {
    QList<ReviewSection::Row> rows;
    if (!preview.unreadLoginItems.isEmpty()) {
        rows.append({u"Login items: "_s + preview.unreadLoginItems, {}});
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

/// Stands before all else: the rest is to be read with it in mind.
QList<ReviewSection> unreadSections(const StartupChangePreview& preview) {
    QList<ReviewSection> sections;
    appendUnlessEmpty(sections, {u"Could not be read"_s, u"exclamationmark.triangle.fill"_s, unreadRows(preview)});
    return sections;
}

QList<ReviewSection> changeSections(const StartupChangePreview& preview) {
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

/// What a performer should know before anything else.
QList<ReviewSection> standingSections(const std::optional<LastFlowStanding>& standing) {
    if (!standing || standing->changed.isEmpty()) {
        return {};
    }
    ReviewSection section{changesTitle(*standing), u"exclamationmark.triangle.fill"_s, {}};
    for (const ApplyVerificationResult::Item& item : standing->changed) {
        section.rows.append({nameOnOneLine(item.name), onOneLine(item.detail.value_or(QString()))});
    }
    return {section};
}

} // namespace

QList<ReviewSection> reviewSections(const StartupChangePreview& preview) {
    return unreadSections(preview) + changeSections(preview);
}

QList<ReviewSection> reviewSections(const ProfileApplyPreview& preview) {
    ReviewSection tweaks = tweakSection(preview.enabledTweaks);
    const QString where = preview.hasOwnSettings ? u"your own settings"_s : u"macOS defaults"_s;
    if (tweaks.rows.isEmpty()) {
        tweaks.title = u"System tweaks"_s;
        tweaks.rows.append({u"Restore all performance tweaks to "_s + where, {}});
    } else if (tweaks.rows.size() < tweakCatalogue().size()) {
        tweaks.rows.append({u"Restore all other performance tweaks to "_s + where, {}});
    }
    return standingSections(preview.standing) + unreadSections(preview.startup) + QList<ReviewSection>{tweaks} +
           changeSections(preview.startup);
}

QList<ReviewSection> reviewSections(const TweaksApplyPreview& preview) {
    QList<ReviewSection> sections = standingSections(preview.standing) + unreadSections(preview.startup);
    appendUnlessEmpty(sections, tweakSection(preview.enabledTweaks));
    return sections + changeSections(preview.startup);
}

} // namespace quorvane
