// The password of a simulated Mac's user is typed into dialogs and written down nowhere.

#include "fakes/SecretSearch.h"
#include "fakes/SimulatedSystem.h"
#include "platform/simulated/PasswordAttempts.h"

#include <gtest/gtest.h>

namespace quorvane {

using macsim::Authorization;

namespace {

/// Types the right password into every dialog.
class TypedPasswordPrompt final : public AuthorizationPrompt {
public:
    explicit TypedPasswordPrompt(const QString& password)
        : m_password(password) {}

    QFuture<Authorization> ask(const QString&) override {
        ++m_dialogs;
        return QtFuture::makeReadyFuture(PasswordAttempts(m_password).ending(m_password).value());
    }

    int dialogs() const { return m_dialogs; }

private:
    QString m_password;
    int m_dialogs = 0;
};

class UserPasswordSecrecy : public SimulatedSystem {
protected:
    UserPasswordSecrecy()
        : SimulatedSystem(u"dj-laptop"_s) {}
};

} // namespace

TEST_F(UserPasswordSecrecy, itStandsInTheDescriptionOfTheMacAlone) {
    const QString password = host->mac().machine().password;
    ASSERT_EQ(password, u"downbeat"_s);
    TypedPasswordPrompt prompt(password);
    system.reset();
    const QString journal = folder.path() + u"/journal.jsonl"_s;
    host = std::make_unique<SimulatedHost>(macFolder(), prompt, SimulatedHostOptions{program(), {}, journal});
    system = std::make_unique<SystemManager>(host->host(), notifications);
    EXPECT_TRUE(apply(exampleProfile(u"festival"_s)));
    EXPECT_EQ(prompt.dialogs(), 1);
    const QString printed = shell(u"cat /private/var/db/simulator/machine.json; env; sfltool dumpbtm"_s);

    const SecretSearch search({password});
    EXPECT_EQ(search.pathsIn(folder.path()), QStringList(u"Mac/private/var/db/simulator/machine.json"_s));
    EXPECT_TRUE(QFile::exists(journal));
    EXPECT_EQ(search.formsIn(printed.toUtf8()), QStringList());
    EXPECT_EQ(search.formsIn(log().toUtf8()), QStringList());
}

} // namespace quorvane
