// Where the app password is to be found on a simulated Mac: in its keychain, and nowhere else. The whole Mac is searched, its
// journal, state and preferences included, and so is all that the program says.

#include "fakes/CountingWorkspace.h"
#include "fakes/ScriptedAlertPresenter.h"
#include "fakes/SecretSearch.h"
#include "fakes/SimulatedSystem.h"
#include "lock/LockManager.h"

namespace quorvane {

namespace {

const QString kFirst = u"Bühnentür-7431"_s;
const QString kSecond = u"green-room-52-🎛"_s;
const QString kWrong = u"trap-door-9986"_s;
const QString kKeychainFile = u"/Users/alex/Library/Keychains/login.keychain-db"_s;

class AppLockSecrecy : public SimulatedSystem {
protected:
    AppLockSecrecy() {
        system.reset();
        const SimulatedHostOptions options{program(), {}, {}, &finger};
        host = std::make_unique<SimulatedHost>(macFolder(), authorization, options);
        system = std::make_unique<SystemManager>(host->host(), notifications);
        setState("biometrics", {{"type", 1}, {"canEvaluate", true}, {"enrolment", "right index"}});
        const Host ports = host->host();
        lock = std::make_unique<LockManager>(ports.keychain, ports.biometrics, alerts, workspace, ports.defaults);
    }

    void setState(const char* subject, const macsim::Json& state) const {
        host->mac().state().update(subject, [&state](macsim::Json& stored) { stored = state; });
    }
    QByteArray hostBytes(const QString& path) const {
        QFile file(macFolder() + path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }

    /// Keeps what the user is told of an operation.
    void say(const std::optional<QString>& error) { said.append(error.value_or(u"done"_s)); }
    bool unlockWithFinger(BiometricAnswer answer) {
        finger.setAnswer(answer);
        return QCoro::waitFor(lock->unlockWithBiometrics());
    }
    std::optional<QString> authenticate() {
        finger.setAnswer(BiometricAnswer::Accept);
        return QCoro::waitFor(lock->authenticateWithBiometrics(u"Verify your identity to remove app lock"_s));
    }

    void expectSecretsOnlyIn(const QStringList& paths, const char* after) {
        // A tool that shows the preferences, and whose run the journal tells of.
        said.append(run({u"/usr/bin/defaults"_s, u"read"_s, u"com.quorvane.app"_s}).standardOutput);
        EXPECT_EQ(search.pathsIn(macFolder()), paths) << after;
        const QStringList spoken = said + trace + finger.reasons() + authorization.prompts();
        EXPECT_EQ(search.formsIn((log() + spoken.join(u'\n')).toUtf8()), QStringList()) << after;
    }

    BiometricPolicy finger{BiometricAnswer::Accept};
    QStringList trace;
    QStringList said;
    ScriptedAlertPresenter alerts{trace};
    CountingWorkspace workspace{trace};
    std::unique_ptr<LockManager> lock;
    const SecretSearch search{{kFirst, kSecond, kWrong}};
    const SecretSearch firstAlone{{kFirst}};
    const SecretSearch secondAlone{{kSecond}};
};

} // namespace

TEST_F(AppLockSecrecy, thePasswordIsInTheKeychainAloneAndGoesWithTheLock) {
    expectSecretsOnlyIn({}, "the start");

    say(lock->enableLock(kFirst, kWrong));
    expectSecretsOnlyIn({}, "a confirmation that differs");
    say(lock->enableLock(kFirst, kFirst));
    expectSecretsOnlyIn({kKeychainFile}, "the lock is on");
    EXPECT_EQ(firstAlone.formsIn(hostBytes(kKeychainFile)), QStringList(kFirst + u" in UTF-8, base64"_s))
        << "the item for the finger";

    EXPECT_FALSE(lock->unlockWithPassword(kWrong));
    EXPECT_TRUE(lock->unlockWithPassword(kFirst));
    expectSecretsOnlyIn({kKeychainFile}, "typed passwords, wrong and right");

    lock->lockIfEnabled();
    EXPECT_FALSE(QCoro::waitFor(lock->requireUnlock(u"switch profiles"_s)));
    EXPECT_FALSE(unlockWithFinger(BiometricAnswer::Refuse));
    EXPECT_FALSE(unlockWithFinger(BiometricAnswer::Cancel));
    EXPECT_TRUE(unlockWithFinger(BiometricAnswer::Accept));
    EXPECT_EQ(authenticate(), kFirst);
    expectSecretsOnlyIn({kKeychainFile}, "fingers, wrong and right");

    say(lock->changePassword(kWrong, kSecond, kSecond));
    say(lock->changePassword(kFirst, kSecond, kWrong));
    expectSecretsOnlyIn({kKeychainFile}, "changes that were refused");
    say(lock->changePassword(kFirst, kSecond, kSecond));
    expectSecretsOnlyIn({kKeychainFile}, "a change");
    EXPECT_EQ(firstAlone.formsIn(hostBytes(kKeychainFile)), QStringList()) << "the old one is gone";
    EXPECT_EQ(secondAlone.formsIn(hostBytes(kKeychainFile)), QStringList(kSecond + u" in UTF-8, base64"_s));

    say(lock->disableLock(kWrong));
    expectSecretsOnlyIn({kKeychainFile}, "a removal that was refused");
    say(lock->disableLock(kSecond));
    expectSecretsOnlyIn({}, "the lock is off");

    EXPECT_EQ(said.filter(u"assword"_s), QStringList({u"Passwords do not match."_s, u"Current password is incorrect."_s,
                                                      u"New passwords do not match."_s, u"Incorrect password."_s}));
    EXPECT_EQ(trace, QStringList({u"activate"_s, u"windows to the front"_s,
                                  u"! Quorvane is Locked | "
                                  "Enter your app password in the Quorvane window to switch profiles. | OK"_s}));
    EXPECT_TRUE(hostBytes(u"/private/var/db/simulator/journal.jsonl"_s).contains("com.quorvane.app"))
        << "the journal was among what was searched";
}

TEST_F(AppLockSecrecy, aKeychainThatFailsGivesNothingAwayEither) {
    setState("keychain", {{"refusesWriting", true}});
    say(lock->enableLock(kFirst, kFirst));
    setState("keychain", {{"generatorFails", true}});
    say(lock->enableLock(kFirst, kFirst));
    expectSecretsOnlyIn({}, "a keychain that takes nothing");

    setState("keychain", macsim::Json::object());
    say(lock->enableLock(kFirst, kFirst));
    EXPECT_TRUE(lock->unlockWithPassword(kFirst));
    setState("keychain", {{"refusesWriting", true}});
    say(lock->changePassword(kFirst, kSecond, kSecond));
    expectSecretsOnlyIn({kKeychainFile}, "a change that can't be written");
    setState("keychain", {{"refusesReading", true}});
    say(lock->changePassword(kFirst, kSecond, kSecond));
    say(lock->disableLock(kFirst));
    EXPECT_FALSE(lock->unlockWithPassword(kFirst));
    lock->lockIfEnabled();
    EXPECT_FALSE(unlockWithFinger(BiometricAnswer::Accept));
    expectSecretsOnlyIn({kKeychainFile}, "a keychain that can't be read");
    EXPECT_EQ(said.filter(u"assword"_s),
              QStringList({u"Could not save the password securely."_s, u"Could not save the password securely."_s,
                           u"Could not save the new password."_s, u"Current password is incorrect."_s,
                           u"Incorrect password."_s}));
}

TEST_F(AppLockSecrecy, withoutAFingerThePasswordIsNowhereAtAll) {
    setState("biometrics", {{"canEvaluate", false}});
    say(lock->enableLock(kFirst, kFirst));
    EXPECT_TRUE(lock->unlockWithPassword(kFirst));
    expectSecretsOnlyIn({}, "a digest doesn't hold it");
    EXPECT_TRUE(hostBytes(kKeychainFile).contains("com.quorvane.app-lock"));
}

TEST_F(AppLockSecrecy, theSearchFindsAPasswordInEveryFormAndEverywhere) {
    const QList<QPair<QString, QStringConverter::Encoding>> encodings{{u"UTF-8"_s, QStringConverter::Utf8},
                                                                      {u"UTF-16LE"_s, QStringConverter::Utf16LE},
                                                                      {u"UTF-16BE"_s, QStringConverter::Utf16BE}};
    for (const auto& [name, encoding] : encodings) {
        QStringEncoder encoder(encoding, QStringConverter::Flag::Stateless);
        const QByteArray raw = encoder.encode(kFirst);
        const QString form = kFirst + u" in "_s + name;
        EXPECT_EQ(search.formsIn("before" + raw + "behind"), QStringList(form));
        EXPECT_EQ(search.formsIn((raw + "behind").toHex()), QStringList(form + u", hexadecimal"_s));
        EXPECT_EQ(search.formsIn(("before" + raw).toHex().toUpper()), QStringList(form + u", hexadecimal"_s));
        for (const char* before : {"", "1", "12", "123", "1234", "12345"}) {
            for (const char* behind : {"", "1", "12"}) {
                QByteArray encoded = (before + raw + behind).toBase64();
                EXPECT_TRUE(search.formsIn(encoded).contains(form + u", base64"_s)) << encoded.toStdString();
                encoded.insert(9, "\r\n\t");
                EXPECT_TRUE(search.formsIn(encoded).contains(form + u", base64"_s)) << encoded.toStdString();
            }
        }
    }
    EXPECT_EQ(search.formsIn((kFirst.chopped(1) + u'!').toUtf8().toBase64()), QStringList()) << "another text";

    const QString preferences = u"/Users/alex/Library/Preferences/com.quorvane.app.plist"_s;
    host->host().defaults.setString(u"leak"_s, kFirst);
    EXPECT_EQ(search.pathsIn(macFolder()), QStringList(preferences)) << "a binary property list, in UTF-16";
    run({u"/usr/bin/defaults"_s, u"write"_s, u"com.quorvane.app"_s, u"leak"_s, kSecond});
    setState("leak", {{"text", kWrong.toStdString()}});
    volume().write(u"/Users/alex/Documents/"_s + kWrong, "x");
    EXPECT_EQ(search.pathsIn(macFolder()),
              QStringList({u"/Users/alex/Documents/"_s + kWrong, preferences,
                           u"/private/var/db/simulator/journal.jsonl"_s, u"/private/var/db/simulator/leak.json"_s}));
}

} // namespace quorvane
