// What this Mac says of itself and its user.

#include "maccheck/CheckProgram.h"
#include "platform/macos/MacMachine.h"

#include <QDir>

#include <gtest/gtest.h>

#include <unistd.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(Machine, itsFoldersAreThereAndEndInNoSlash) {
    const MacMachine machine;
    for (const QString& folder :
         {machine.homeFolder(), machine.applicationSupportFolder(), machine.temporaryFolder()}) {
        EXPECT_TRUE(QDir::isAbsolutePath(folder)) << folder.toStdString();
        EXPECT_FALSE(folder.endsWith(u'/')) << folder.toStdString();
        EXPECT_TRUE(QDir(folder).exists()) << folder.toStdString();
    }
    EXPECT_TRUE(machine.applicationSupportFolder().startsWith(machine.homeFolder() + u'/'));
}

TEST(Machine, itHasANameAnIdAndAVersion) {
    const MacMachine machine;
    EXPECT_FALSE(machine.computerName().isEmpty());
    EXPECT_FALSE(machine.hardwareId().isEmpty());
    EXPECT_EQ(machine.hardwareId(), MacMachine().hardwareId());
    EXPECT_GE(machine.systemVersion().section(u'.', 0, 0).toInt(), 14);
    EXPECT_EQ(machine.userId(), ::getuid());
    tell(u"macOS "_s + machine.systemVersion());
}

TEST(Machine, aMomentIsWrittenWithItsYear) {
    const QDateTime moment(QDate(2026, 11, 15), QTime(21, 5));
    const QString text = MacMachine().dateAndTimeText(moment);
    EXPECT_TRUE(text.contains(u"26"_s)) << text.toStdString();
    tell(text);
}

} // namespace quorvane
