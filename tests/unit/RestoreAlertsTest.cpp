#include "snapshots/RestoreAlerts.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr RestoreOutcome kFailed{false, RestoreSource::Snapshot, true};
constexpr RestoreOutcome kToDefaults{true, RestoreSource::StandardDefaults, false};
constexpr RestoreOutcome kFromSnapshot{true, RestoreSource::Snapshot, true};
constexpr RestoreOutcome kFromBaseline{true, RestoreSource::Baseline, false};

void expectAlert(const ClosingAlert& alert, const QString& title, const QString& text) {
    EXPECT_EQ(alert.title, title);
    EXPECT_EQ(alert.text, text);
}

} // namespace

TEST(RestoreAlerts, aSnapshotIsSavedOrNot) {
    expectAlert(snapshotAlert(true), u"Snapshot Saved"_s,
                u"Your current system setup has been saved as the restore baseline."_s);
    expectAlert(snapshotAlert(false), u"Snapshot Failed"_s,
                u"Could not save the restore baseline. Check the Logs tab for details."_s);
}

TEST(RestoreAlerts, anUndoSpeaksOfASnapshotWhereItsFileIsThere) {
    const QString standard = u"Standard operation restored.\n\nPlease restart your Mac."_s;
    expectAlert(undoAlert(kFromSnapshot), u"Success"_s,
                u"Performance tweaks restored from your saved snapshot.\n\nPlease restart your Mac."_s);
    expectAlert(undoAlert(kToDefaults), u"Success"_s, standard);
    expectAlert(undoAlert(kFromBaseline), u"Success"_s, standard);
    expectAlert(undoAlert(kFailed), u"Cancelled"_s,
                u"System-level defaults were not restored. Check the Logs tab for details."_s);
}

TEST(RestoreAlerts, defaultSpeaksOfABaselineWhereItWasTheSource) {
    const QString fromBaseline = u"Standard macOS settings restored from your saved restore baseline.\n\n"
                                 "Please restart your Mac."_s;
    expectAlert(defaultAlert(kFromSnapshot), u"Default Applied"_s, fromBaseline);
    expectAlert(defaultAlert(kFromBaseline), u"Default Applied"_s, fromBaseline);
    expectAlert(defaultAlert(kToDefaults), u"Default Applied"_s,
                u"Standard macOS settings restored.\n\nPlease restart your Mac."_s);
    expectAlert(defaultAlert(kFailed), u"Cancelled"_s,
                u"Default settings were not restored. Check the Logs tab for details."_s);
}

TEST(RestoreAlerts, aReinstatementSpeaksOfABaselineWhereItWasTheSource) {
    const QString fromBaseline = u"System restored from your saved restore baseline.\n\n"
                                 "Please restart your Mac for changes to take full effect."_s;
    expectAlert(reinstateAlert(kFromSnapshot), u"Success"_s, fromBaseline);
    expectAlert(reinstateAlert(kFromBaseline), u"Success"_s, fromBaseline);
    expectAlert(reinstateAlert(kToDefaults), u"Success"_s,
                u"System has been restored to standard defaults.\n\n"
                "Please restart your Mac for changes to take full effect."_s);
    expectAlert(reinstateAlert(kFailed), u"Cancelled"_s, u"System restoration was cancelled or failed."_s);
}

} // namespace quorvane
