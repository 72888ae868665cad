// The simulated Mac's library: the contract, and what its private entry points do.

#include "platform/simulated/SimulatedBackgroundTaskPermissions.h"
#include "contract/BackgroundTaskPermissionsContract.h"
#include "fakes/SimulatedMacFolder.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using macsim::Json;

class SimulatedTaskPermissionsSubject final : public TaskPermissionsSubject {
public:
    BackgroundTaskPermissions& permissions() override { return m_permissions; }

private:
    macsim::SimulatedMacFolder m_mac;
    SimulatedBackgroundTaskPermissions m_permissions{m_mac.mac};
};

const QString kLibrary = u"/System/Library/Frameworks/ServiceManagement.framework/ServiceManagement"_s;
const QString kLoginItem = u"SMLoginItemSetUserAllowed_4BTM"_s;
const QString kLaunchdPlist = u"SMLaunchdPlistSetUserAllowed_4BTM"_s;
const QString kSplice = u"/Applications/Splice Sounds.app"_s;

Json records() {
    return Json::array({
        {{"identifier", "2.com.splice.Splice"},
         {"url", "file:///Applications/Splice%20Sounds.app/"},
         {"allowed", true}},
        {{"identifier", "16.com.splice.agent"}, {"parent", "2.com.splice.Splice"}, {"allowed", true}},
        {{"identifier", "com.splice.bare"}, {"parent", "com.splice.Splice"}, {"allowed", true}},
        {{"identifier", "4.other"}, {"bundleIdentifier", "com.splice.helper"}, {"parent", "2.com.splice.Splice"}},
        {{"identifier", "2.com.example.Sync"}, {"url", "file:///Applications/Sync.app/"}, {"allowed", true}},
        {{"identifier", "8.com.example.agent"}, {"parent", "2.com.example.Sync"}, {"allowed", true}},
        {{"identifier", "8.com.example.orphan"}, {"allowed", true}},
    });
}

class SimulatedTaskPermissions : public ::testing::Test {
protected:
    void setState(const Json& state) {
        mac.mac.state().update("backgroundTasks", [&state](Json& stored) { stored = state; });
    }
    Json storedRecords() const { return mac.mac.state().read("backgroundTasks").at("records"); }
    bool call(const QString& symbol, const QString& application, const QString& label, bool isAllowed = false) {
        EXPECT_TRUE(permissions.openLibrary(kLibrary));
        const BackgroundTaskPermissions::SetUserAllowed entryPoint = permissions.entryPoint(symbol);
        return entryPoint && entryPoint(application, label, isAllowed);
    }

    macsim::SimulatedMacFolder mac;
    SimulatedBackgroundTaskPermissions permissions{mac.mac};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Simulated, BackgroundTaskPermissionsContract,
                         ::testing::Values(&makeSubject<TaskPermissionsSubject, SimulatedTaskPermissionsSubject>));

TEST_F(SimulatedTaskPermissions, onlyTheLibraryItselfOpens) {
    setState({{"entryPoints", {kLoginItem.toStdString()}}});
    EXPECT_FALSE(permissions.openLibrary(u"/System/Library/Frameworks/Other.framework/Other"_s));
    EXPECT_FALSE(permissions.entryPoint(kLoginItem));
    EXPECT_TRUE(permissions.openLibrary(kLibrary));
    EXPECT_TRUE(permissions.entryPoint(kLoginItem));
}

TEST_F(SimulatedTaskPermissions, theLibraryHasTheEntryPointsThatTheStateNames) {
    EXPECT_TRUE(permissions.openLibrary(kLibrary));
    EXPECT_FALSE(permissions.entryPoint(kLoginItem));
    setState({{"records", records()}});
    EXPECT_FALSE(permissions.entryPoint(kLoginItem));
    setState({{"entryPoints", Json::array({kLaunchdPlist.toStdString()})}});
    EXPECT_FALSE(permissions.entryPoint(kLoginItem));
    EXPECT_TRUE(permissions.entryPoint(kLaunchdPlist));
}

TEST_F(SimulatedTaskPermissions, anItemIsSetByEachFormOfItsLabel) {
    const Json entryPoints = Json::array({kLoginItem.toStdString(), kLaunchdPlist.toStdString()});
    const auto expectOnly = [&](std::size_t changed, const QString& symbol, const QString& label) {
        setState({{"entryPoints", entryPoints}, {"records", records()}});
        EXPECT_TRUE(call(symbol, kSplice, label)) << label.toStdString();
        Json expected = records();
        expected[changed]["allowed"] = false;
        EXPECT_EQ(storedRecords(), expected) << label.toStdString();
    };
    expectOnly(1, kLoginItem, u"com.splice.agent"_s);
    expectOnly(1, kLaunchdPlist, u"16.com.splice.agent"_s);
    expectOnly(2, kLaunchdPlist, u"com.splice.bare"_s);
    expectOnly(3, kLoginItem, u"com.splice.helper"_s);
}

TEST_F(SimulatedTaskPermissions, anItemThatAlreadyIsSoIsTaken) {
    setState({{"entryPoints", Json::array({kLoginItem.toStdString()})}, {"records", records()}});
    EXPECT_TRUE(call(kLoginItem, kSplice, u"com.splice.agent"_s));
    EXPECT_TRUE(call(kLoginItem, kSplice + u'/', u"com.splice.agent"_s));
    EXPECT_TRUE(call(kLoginItem, kSplice, u"com.splice.agent"_s, true));
    EXPECT_EQ(storedRecords(), records());
}

TEST_F(SimulatedTaskPermissions, whatIsNotAnItemOfTheApplicationIsNotTaken) {
    setState({{"entryPoints", Json::array({kLoginItem.toStdString()})}, {"records", records()}});
    EXPECT_FALSE(call(kLoginItem, kSplice, u"com.example.agent"_s));
    EXPECT_FALSE(call(kLoginItem, kSplice, u"com.example.orphan"_s));
    EXPECT_FALSE(call(kLoginItem, kSplice, u"com.splice"_s));
    EXPECT_FALSE(call(kLoginItem, kSplice, u"com.splice.Splice"_s)); // the application itself has no parent
    EXPECT_FALSE(call(kLoginItem, u"/Applications/Gone.app"_s, u"com.splice.agent"_s));
    EXPECT_FALSE(call(kLoginItem, QString(), QString()));
    EXPECT_EQ(storedRecords(), records());
}

TEST_F(SimulatedTaskPermissions, aStateOfAnotherShapeHasNoItems) {
    for (const Json& odd : {Json::array({1, "x", nullptr}), Json("x"), Json(nullptr), Json::object()}) {
        setState({{"entryPoints", Json::array({kLoginItem.toStdString()})}, {"records", odd}});
        EXPECT_FALSE(call(kLoginItem, kSplice, u"com.splice.agent"_s)) << odd.dump();
        EXPECT_EQ(storedRecords(), odd);
    }
}

} // namespace quorvane
