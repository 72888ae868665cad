// Property lists on a simulated Mac: the contract, and files that only root may read.

#include "platform/simulated/SimulatedPropertyLists.h"
#include "contract/PropertyListsContract.h"
#include "fakes/SimulatedMacFolder.h"

#include <QFile>

namespace quorvane {

namespace {

class SimulatedListsSubject final : public ListsSubject {
public:
    const PropertyLists& lists() const override { return m_lists; }
    QString folder() const override { return u"/Users/alex/Library/LaunchAgents"_s; }
    void write(const QString& path, const QByteArray& bytes) override { volume().write(path, bytes); }
    void link(const QString& path, const QString& target) override { volume().createLink(path, target); }
    void writeLarge(const QString& path, const QByteArray& bytes, qint64 size) override {
        QFile file(m_mac.hostFolder() + path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        ASSERT_TRUE(file.resize(size)); // a hole, which takes no room
    }

private:
    macsim::Volume volume() const { return m_mac.mac.volume(macsim::Actor::User); }

    macsim::SimulatedMacFolder m_mac;
    SimulatedPropertyLists m_lists{m_mac.mac};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Simulated, PropertyListsContract,
                         ::testing::Values(&makeSubject<ListsSubject, SimulatedListsSubject>));

TEST(SimulatedPropertyLists, whatOnlyRootMayReadIsNone) {
    const macsim::SimulatedMacFolder mac;
    const SimulatedPropertyLists lists(mac.mac);
    const QByteArray list = "<plist version=\"1.0\"><dict/></plist>";
    const macsim::Volume root = mac.mac.volume(macsim::Actor::Root);
    root.write(u"/var/root/secret.plist"_s, list);
    root.write(u"/Library/open.plist"_s, list);
    EXPECT_EQ(lists.dictionary(u"/var/root/secret.plist"_s), std::nullopt);
    EXPECT_EQ(lists.dictionary(u"/Library/open.plist"_s), QVariantMap());
}

/// Deeper than any stack: the simulated Mac's own reader counts the levels before it reads.
class SimulatedListsDepth : public PropertyListsContract {};

TEST_P(SimulatedListsDepth, aHundredThousandLevelsAreNone) {
    expectNestedIsNone(100'000);
}

INSTANTIATE_TEST_SUITE_P(Simulated, SimulatedListsDepth,
                         ::testing::Values(&makeSubject<ListsSubject, SimulatedListsSubject>));

} // namespace quorvane
