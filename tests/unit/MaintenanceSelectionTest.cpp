#include "maintenance/MaintenanceSelection.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(MaintenanceSelection, nothingIsSelectedAtFirst) {
    const MaintenanceSelection selection;
    EXPECT_FALSE(selection.clearCache || selection.cleanTrash || selection.purgeDownloads);
}

TEST(MaintenanceSelection, theAlertSaysWhetherEverythingWentWell) {
    EXPECT_EQ((MaintenanceOutcome{true, {u"Trash emptied."_s}}.alertTitle()), u"Success"_s);
    EXPECT_EQ((MaintenanceOutcome{false, {u"Trash emptied."_s}}.alertTitle()), u"Completed with Issues"_s);
}

TEST(MaintenanceSelection, aStepThatFailsIsToldInThePlaceOfWhatItDoes) {
    MaintenanceOutcome outcome;
    outcome.add(std::nullopt, u"System caches cleared."_s);
    EXPECT_EQ(outcome, (MaintenanceOutcome{true, {u"System caches cleared."_s}}));
    outcome.add(u"2 item(s) stayed in Downloads."_s, u"Downloads folder purged."_s);
    outcome.add(std::nullopt, u"Trash emptied."_s);
    EXPECT_EQ(outcome,
              (MaintenanceOutcome{
                  false, {u"System caches cleared."_s, u"2 item(s) stayed in Downloads."_s, u"Trash emptied."_s}}));
}

TEST(MaintenanceSelection, theAlertHasAParagraphForEachMessage) {
    EXPECT_EQ((MaintenanceOutcome{true, {}}.alertText()), QString());
    EXPECT_EQ((MaintenanceOutcome{true, {u"Trash emptied."_s, u"Downloads folder purged."_s}}.alertText()),
              u"Trash emptied.\n\nDownloads folder purged."_s);
}

} // namespace quorvane
