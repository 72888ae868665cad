#include "network/NameServers.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(NameServers, thoseThatAreSetStandOneInALine) {
    const QStringList servers{u"9.9.9.9"_s, u"2620:fe::fe"_s, u"fe80::1%en0"_s, u"FE80::A"_s};
    EXPECT_EQ(parsedNameServers(servers.join(u'\n') + u'\n'), servers);
}

TEST(NameServers, theSentenceIsNoServer) {
    EXPECT_EQ(parsedNameServers(u"There aren't any DNS Servers set on Wi-Fi.\n"_s), QStringList());
    EXPECT_EQ(parsedNameServers(u"There aren't any DNS Servers set on 9.9.9.9.\n"_s), QStringList());
    EXPECT_EQ(parsedNameServers({}), QStringList());
}

TEST(NameServers, whatIsNoAddressTellsNothing) {
    for (const QString& printed :
         {u"** Error: The parameters were not valid.\n"_s, u"x is not a recognized network service.\n"_s, u"9\n"_s,
          u"9.9.9.9\nsomething else\n"_s, u"cafe\n"_s, u"%en0\n"_s}) {
        EXPECT_EQ(parsedNameServers(printed), std::nullopt) << printed.toStdString();
    }
}

TEST(NameServers, theLogKeepsWhatIsTakenAway) {
    EXPECT_EQ(nameServersLogLine({u"Bob's %1"_s, QStringList{u"9.9.9.9"_s, u"1.1.1.1"_s}}),
              u"  [INFO] Name servers of Bob's %1 were: 9.9.9.9, 1.1.1.1"_s);
    EXPECT_EQ(notResetText({u"Wi-Fi"_s, u"LAN 2"_s}), u"Not reset: Wi-Fi, LAN 2."_s);
}

TEST(NameServers, aServicesNameStaysOneWord) {
    EXPECT_EQ(nameServersEmptiedCommand(u"Wi-Fi"_s), u"networksetup -setdnsservers Wi-Fi Empty"_s);
    EXPECT_EQ(nameServersEmptiedCommand(u"'; touch x; '"_s),
              uR"(networksetup -setdnsservers ''\''; touch x; '\''' Empty)"_s);
}

} // namespace quorvane
