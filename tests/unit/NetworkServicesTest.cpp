#include "network/NetworkServices.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

TEST(NetworkServices, theListingGivesEveryServiceAndNotItsFirstLine) {
    EXPECT_EQ(
        parsedNetworkServices(u"An asterisk (*) denotes that a network service is disabled.\n"
                              "Wi-Fi\n"
                              "*Bluetooth PAN\n"
                              "USB 10/100/1000 LAN 2\n"
                              "Bob's iPhone\n"
                              "Büro (VPN)\n"_s),
        (QStringList{u"Wi-Fi"_s, u"Bluetooth PAN"_s, u"USB 10/100/1000 LAN 2"_s, u"Bob's iPhone"_s, u"Büro (VPN)"_s}));
}

TEST(NetworkServices, linesThatNameNothingAreLeftOut) {
    struct Row {
        QString listing;
        QStringList names;
    };
    const QList<Row> rows{
        {u""_s, {}},
        {u"\n \n\t\n"_s, {}},
        {u"An asterisk (*) denotes that a network service is disabled.\n"_s, {}},
        {u"An asterisk (*) denotes that a network service is disabled."_s, {}},
        {u"*\n**\n"_s, {}},
        {u"  Wi-Fi\t\n"_s, {u"Wi-Fi"_s}},
        {u"**Wi-Fi**"_s, {u"Wi-Fi"_s}},
        {u"Star * Net"_s, {u"Star * Net"_s}},
        {u"Wi-Fi\r\n*Ethernet\r\n"_s, {u"Wi-Fi"_s, u"Ethernet"_s}},
        {u"Wi-Fi\nWi-Fi\n"_s, {u"Wi-Fi"_s, u"Wi-Fi"_s}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.listing.toStdString());
        EXPECT_EQ(parsedNetworkServices(row.listing), row.names);
    }
}

TEST(NetworkServices, aServiceIsSwitchedByAQuotedName) {
    EXPECT_EQ(networkServiceCommand(u"Wi-Fi"_s, NetworkSwitch::Off),
              u"networksetup -setnetworkserviceenabled 'Wi-Fi' off"_s);
    EXPECT_EQ(networkServiceCommand(u"USB 10/100/1000 LAN"_s, NetworkSwitch::On),
              u"networksetup -setnetworkserviceenabled 'USB 10/100/1000 LAN' on"_s);
}

TEST(NetworkServices, aNameCantLeaveItsQuotes) {
    EXPECT_EQ(networkServiceCommand(u"Bob's $(iPhone) %2"_s, NetworkSwitch::Off),
              uR"(networksetup -setnetworkserviceenabled 'Bob'\''s $(iPhone) %2' off)"_s);
}

TEST(NetworkServices, thoseNotAsCapturedAreOffOrOnOrUnreadOrGone) {
    const QMap<QString, bool> captured{{u"Gone"_s, true}, {u"LAN"_s, false}, {u"Odd"_s, true},
                                       {u"Off"_s, true},  {u"On"_s, false},  {u"Wi-Fi"_s, true}};
    const QList<NetworkServiceState> services{{u"Wi-Fi"_s, true}, {u"LAN"_s, false},        {u"Off"_s, false},
                                              {u"On"_s, true},    {u"Odd"_s, std::nullopt}, {u"New"_s, false}};
    EXPECT_EQ(servicesNotAsCaptured(captured, services), (QStringList{u"Gone"_s, u"Odd"_s, u"Off"_s, u"On"_s}));
    EXPECT_EQ(servicesNotAsCaptured({}, services), QStringList());
}

} // namespace
} // namespace quorvane
