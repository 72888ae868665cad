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

TEST(MaintenanceSelection, theAlertHasAParagraphForEachMessage) {
    EXPECT_EQ((MaintenanceOutcome{true, {}}.alertText()), QString());
    EXPECT_EQ((MaintenanceOutcome{true, {u"Trash emptied."_s, u"Downloads folder purged."_s}}.alertText()),
              u"Trash emptied.\n\nDownloads folder purged."_s);
}

} // namespace quorvane
