// What the system's look promises, on a Mac that its user changes and on one that a test changes.

#include "fakes/EventLoop.h"
#include "fakes/ManualSystemLook.h"
#include "fakes/SimulatedMacFolder.h"
#include "platform/simulated/SimulatedSystemLook.h"
#include "simulator/PreferenceStore.h"
#include "simulator/tools/Registry.h"

#include <gtest/gtest.h>

#include <memory>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// A system, and somebody at its settings.
class LookSubject {
public:
    virtual ~LookSubject() = default;
    virtual SystemLook& look() = 0;
    virtual void setDark(bool isDark) = 0;
    virtual void setReducesMotion(bool isOn) = 0;
    virtual void setIncreasesContrast(bool isOn) = 0;
};

/// Whose user types into a terminal.
class SimulatedLookSubject final : public LookSubject {
public:
    SystemLook& look() override { return m_look; }
    void setDark(bool isDark) override {
        defaults(isDark ? QStringList{u"write"_s, u"-g"_s, u"AppleInterfaceStyle"_s, u"Dark"_s}
                        : QStringList{u"delete"_s, u"-g"_s, u"AppleInterfaceStyle"_s});
    }
    void setReducesMotion(bool isOn) override { set(u"reduceMotion"_s, isOn); }
    void setIncreasesContrast(bool isOn) override { set(u"increaseContrast"_s, isOn); }

private:
    void set(const QString& key, bool isOn) {
        defaults({u"write"_s, u"com.apple.universalaccess"_s, key, u"-bool"_s, isOn ? u"true"_s : u"false"_s});
    }
    void defaults(QStringList arguments) {
        const QString tool = u"/usr/bin/defaults"_s;
        arguments.prepend(tool);
        macsim::ToolContext context = m_mac.context(arguments);
        EXPECT_EQ(m_mac.tools.value(tool)(context), 0) << context.error.toStdString();
    }

    macsim::SimulatedMacFolder m_mac{macsim::simulatorTools()};
    SimulatedSystemLook m_look{m_mac.mac};
};

class ManualLookSubject final : public LookSubject {
public:
    SystemLook& look() override { return m_look; }
    void setDark(bool isDark) override {
        m_look.systemScheme = isDark ? ColorScheme::Dark : ColorScheme::Light;
        tell();
    }
    void setReducesMotion(bool isOn) override {
        m_look.isMotionReduced = isOn;
        tell();
    }
    void setIncreasesContrast(bool isOn) override {
        m_look.isContrastIncreased = isOn;
        tell();
    }

private:
    void tell() {
        QMetaObject::invokeMethod(
            &m_context, [this] { m_look.tell(); }, Qt::QueuedConnection);
    }

    ManualSystemLook m_look;
    QObject m_context;
};

template <typename Subject>
std::unique_ptr<LookSubject> makeLook() {
    return std::make_unique<Subject>();
}

class SystemLookContract : public ::testing::TestWithParam<std::unique_ptr<LookSubject> (*)()> {
protected:
    QString described() const {
        return u"%1, motion %2, contrast %3"_s.arg(look.scheme() == ColorScheme::Dark ? u"dark"_s : u"light"_s,
                                                   look.reducesMotion() ? u"reduced"_s : u"normal"_s,
                                                   look.increasesContrast() ? u"increased"_s : u"normal"_s);
    }
    void waitFor(const int& heard, int wanted) {
        processEventsUntil([&] { return heard >= wanted; });
    }

    std::unique_ptr<LookSubject> subject = GetParam()();
    SystemLook& look = subject->look();
};

} // namespace

TEST_P(SystemLookContract, aSystemThatSaysNothingIsLightAndMoves) {
    EXPECT_EQ(described(), u"light, motion normal, contrast normal"_s);
}

TEST_P(SystemLookContract, eachOfTheThreeIsToldOfAndReadAnew) {
    int heard = 0;
    const auto observation = look.observe([&heard] { ++heard; });
    subject->setDark(true);
    EXPECT_EQ(heard, 0) << "not before the event loop comes round";
    waitFor(heard, 1);
    EXPECT_EQ(described(), u"dark, motion normal, contrast normal"_s);
    subject->setReducesMotion(true);
    waitFor(heard, 2);
    EXPECT_EQ(described(), u"dark, motion reduced, contrast normal"_s);
    subject->setIncreasesContrast(true);
    waitFor(heard, 3);
    EXPECT_EQ(described(), u"dark, motion reduced, contrast increased"_s);
    subject->setReducesMotion(false);
    waitFor(heard, 4);
    subject->setIncreasesContrast(false);
    waitFor(heard, 5);
    subject->setDark(false);
    waitFor(heard, 6);
    EXPECT_EQ(described(), u"light, motion normal, contrast normal"_s);
    EXPECT_EQ(heard, 6);
}

TEST_P(SystemLookContract, aHandlerMayEndItsOwnObservation) {
    int heard = 0;
    int later = 0;
    std::unique_ptr<NotificationObservation> once;
    once = look.observe([&] {
        once.reset();
        ++heard;
    });
    const auto other = look.observe([&later] { ++later; });
    subject->setDark(true);
    waitFor(later, 1);
    subject->setDark(false);
    waitFor(later, 2);
    EXPECT_EQ(heard, 1);
}

INSTANTIATE_TEST_SUITE_P(EachSystemLook, SystemLookContract,
                         ::testing::Values(&makeLook<SimulatedLookSubject>, &makeLook<ManualLookSubject>));

namespace {

/// What is kept, as others write it.
class SimulatedLook : public ::testing::Test {
protected:
    void write(const QString& domain, const QString& key, const macsim::PropertyList& value) {
        const macsim::PreferenceStore store(mac.mac, mac.mac.volume(macsim::Actor::User));
        store.write({domain}, key, value);
    }

    macsim::SimulatedMacFolder mac;
    SimulatedSystemLook look{mac.mac};
};

} // namespace

TEST_F(SimulatedLook, onlyTheStyleThatMacOSWritesIsDark) {
    for (const macsim::PropertyList& style :
         {macsim::PropertyList(u"Light"_s), macsim::PropertyList(u"dark"_s), macsim::PropertyList(true)}) {
        write(macsim::kGlobalDomain.toString(), u"AppleInterfaceStyle"_s, style);
        EXPECT_EQ(look.scheme(), ColorScheme::Light);
    }
}

TEST_F(SimulatedLook, aSwitchMayBeANumberAndIsOffAsAnythingElse) {
    const auto isOnAs = [this](const macsim::PropertyList& value) {
        write(u"com.apple.universalaccess"_s, u"reduceMotion"_s, value);
        return look.reducesMotion();
    };
    EXPECT_TRUE(isOnAs(1));
    EXPECT_FALSE(isOnAs(0));
    EXPECT_FALSE(isOnAs(u"soon"_s));
    EXPECT_FALSE(isOnAs(macsim::PropertyList::Array()));
}

TEST_F(SimulatedLook, otherPreferencesAreNoneOfItsBusiness) {
    int heard = 0;
    const auto observation = look.observe([&heard] { ++heard; });
    write(u"com.apple.dock"_s, u"autohide"_s, true);
    write(u"com.apple.universalaccess"_s, u"reduceTransparency"_s, true);
    write(macsim::kGlobalDomain.toString(), u"AppleInterfaceStyle"_s, u"Light"_s);
    write(u"com.apple.universalaccess"_s, u"reduceMotion"_s, true);
    processEventsUntil([&] { return heard > 0; });
    EXPECT_EQ(heard, 1);
}

} // namespace quorvane
