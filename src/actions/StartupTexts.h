#pragma once

#include "actions/PageTexts.h"
#include "platform/AlertPresenter.h"
#include "startup/items/WorkingStartup.h"

#include <QString>
#include <QStringList>

// What the startup editor says.
namespace quorvane {

inline const QString kStartupItemsTitle = QStringLiteral("Startup Items");
inline const QString kStartupItemsFootnote =
    QStringLiteral("Control which apps, agents, background items, and daemons run when you log in. Turn off an item to "
                   "disable it when this profile is applied.");
inline const QString kSearchStartupItems = QStringLiteral("Search startup items…");
inline const QString kSearchSymbol = QStringLiteral("magnifyingglass");
inline const QString kRefresh = QStringLiteral("Refresh");
inline const QString kRefreshSymbol = QStringLiteral("arrow.triangle.2.circlepath");
inline const QString kAddApplication = QStringLiteral("Add Application…");
inline const QString kAddApplicationSymbol = QStringLiteral("plus.circle.fill");
inline const QString kClearSelection = QStringLiteral("Clear Selection");
inline const QString kReviewChanges = QStringLiteral("Review Changes");
inline const QString kChooseApplication = QStringLiteral("Choose Application to Start at Login");

// ---- The list

QString runAtLoginHeading(qsizetype count);
QString absentHeading(qsizetype count);
/// What stands there instead of rows. @param isLoading  nothing was found yet, and somebody looks
QString emptyListText(bool isLoading, bool isSearched);
/// One text for each source that couldn't be read.
QStringList unreadSourceTexts(const DiscoveredStartup& discovered);

// ---- A row

QString symbolOf(StartupItemKind kind);
inline const QString kNewMark = QStringLiteral("New");
inline const QString kProtectedSymbol = QStringLiteral("lock.fill");
inline const QString kProtectedHelp = QStringLiteral("Protected audio-related item");
inline const QString kRemoveSymbol = QStringLiteral("minus.circle.fill");
inline const QString kRemoveFromStartup = QStringLiteral("Remove from startup");
/// Of the button that hides the windows of an added application.
QString hiddenHelp(bool isHidden);
QString hiddenSymbol(bool isHidden);
enum class ItemPath { Left, Shown };
/// Under the name. @param path  shown where another row says the same otherwise
QString itemDescription(const StartupItem& item, ItemPath path);
/// For a screen reader: "Live, App, protected, runs at login".
QString spokenItem(const StartupItem& item);
/// What is searched of an item, in the form of queries.
QString startupSearchText(const StartupItem& item);
/// What was typed, in the form in which texts are compared; empty for blanks.
QString startupQuery(const QString& typed);

// ---- The sections below

inline const QString kSuggestionsTitle = QStringLiteral("Suggested performance apps");
inline const QString kSuggestionsSymbol = QStringLiteral("music.note.house.fill");
inline const QString kAddSuggestionSymbol = QStringLiteral("plus.circle");
inline const QString kServicesTitle = QStringLiteral("Cloud Services");
inline const QString kServicesText =
    QStringLiteral("Cloud storage detected on this Mac. Turn off a service to prevent it from starting at login.");
inline const QString kNetworkTitle = QStringLiteral("Network");

/// A cloud service that can be switched.
struct ServiceRow {
    CloudSyncService service = CloudSyncService::amazonDrive;
    RowText text;
    QString help;
    bool isOn = true;

    bool operator==(const ServiceRow&) const = default;
};

/// Of the services that were detected, and of those that are off, by name.
/// @param leftOff  those that are on while their items are still off
QList<ServiceRow> serviceRows(const QList<CloudSyncService>& detected, const CloudSyncServices& disabled,
                              const CloudSyncServices& leftOff);
RowText networkRow();

// ---- Questions

/// Return and Escape keep the item enabled.
Alert protectedItemQuestion();
Alert clearSelectionQuestion();

} // namespace quorvane
