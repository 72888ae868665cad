#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// What the window's frame, its overlays and its sheets say. Texts are plain.
namespace quorvane {

struct ActiveConfiguration;

// ---- The frame

/// The name of the active configuration as everything outside the page shows it: "Default" too; empty where there is none.
QString titleName(const ActiveConfiguration& active);
/// "Quorvane — Live".
QString windowTitle(const ActiveConfiguration& active);

enum class Tab { performance, maintenance, network, logs, settings };

/// A tab in the sidebar.
struct TabText {
    Tab tab = Tab::performance;
    QString text;
    QString symbol; ///< of the system's symbol font
    QString group;

    bool operator==(const TabText&) const = default;
};

/// All tabs in their order. Those of one group stand together.
const QList<TabText>& tabTexts();

inline const QString kNoLogMessages =
    QStringLiteral("No log messages yet. Run an optimization or maintenance task to see output here.");

// ---- The log

inline const QString kVerboseLogging = QStringLiteral("Verbose Debug Logging");
inline const QString kClearLog = QStringLiteral("Clear Log");
inline const QString kExportLog = QStringLiteral("Export Log…");
inline const QString kCopyLog = QStringLiteral("Copy");
inline const QString kSearchLog = QStringLiteral("Search log…");
inline const QString kSearchLogLabel = QStringLiteral("Search log");
inline const QString kNextMatch = QStringLiteral("Next");
inline const QString kPreviousMatch = QStringLiteral("Previous");
inline const QString kNoMatch = QStringLiteral("Not found");
inline const QString kAllMessages = QStringLiteral("All Messages");
/// Before what the menu of tags shows, for who only hears it.
inline const QString kShownMessages = QStringLiteral("Shown: ");
inline const QString kNoMessagesOfTag = QStringLiteral("No log messages of this kind.");
/// The run whose log is shown, before its name for who only hears it.
inline const QString kShownRun = QStringLiteral("Run: ");
inline const QString kThisRun = QStringLiteral("This Run");
inline const QString kReadingLogOfRun = QStringLiteral("Reading the log…");
inline const QString kEmptyLogOfRun = QStringLiteral("The log of this run is empty.");
inline const QString kLogOfRunIsGone =
    QStringLiteral("The log of this run is gone. Only those of the last five runs are kept.");
/// @param problem  the system's words
QString unreadableLogText(const QString& problem);
QString unlistedRunsText(const QString& problem);
/// Of the button that leads back to the newest line. @param linesBelow  those below what is in view
QString latestText(int linesBelow);

// ---- The documentation, which is no tab

inline const QString kDocumentation = QStringLiteral("Documentation");
inline const QString kDocumentationSymbol = QStringLiteral("book.fill");

// ---- While the program is busy

QString waitingText(bool isBusy, const QString& busyMessage, bool isVerifying);
inline const QString kWaitingHint = QStringLiteral("This may take a moment.");

// ---- The baseline prompt

inline const QString kBaselinePromptTitle = QStringLiteral("Create Master System Baseline");
inline const QString kBaselinePromptText =
    QStringLiteral("Quorvane can capture your Mac’s current system settings as a protected master restore baseline.");
const QStringList& baselinePromptPoints();
inline const QString kBaselinePromptSaving = QStringLiteral("Capturing your current system settings…");
inline const QString kBaselinePromptFailed =
    QStringLiteral("The baseline could not be saved. Check the Logs tab for details.");
inline const QString kNotNow = QStringLiteral("Not Now");
inline const QString kCreateMasterBaseline = QStringLiteral("Create Master Baseline");

// ---- The review. What it is about brings its own texts along.

inline const QString kPreparingReview = QStringLiteral("Preparing review…");
inline const QString kClose = QStringLiteral("Close");
inline const QString kDone = QStringLiteral("Done");

} // namespace quorvane
