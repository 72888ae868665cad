// Text that comes from files, tools and people, and tries to become a command. Each case is tried twice: with the
// program's own guard nothing happens; with the guard taken away the same text breaks out. So each test is known to be
// able to fail.

#include "fakes/SimulatedSystem.h"

#include "core/AdminScript.h"
#include "core/Quoting.h"

#include <functional>
#include <optional>
#include <utility>

namespace quorvane {

namespace {

using macsim::Actor;

/// A file that only root can make, and that no honest line makes.
const QString kBrokenOut = u"/Library/broken-out"_s;

class HostileText : public SimulatedSystem {
protected:
    bool hasBrokenOut() const { return volume(Actor::Root).exists(kBrokenOut); }

    /// Runs a shell line as root, through the AppleScript that the program composes.
    void runAsRoot(const QString& line) { QCoro::waitFor(system->executeAdminScript(line, u"Please."_s)); }
    /// Makes anew, inside the Mac: the path of a folder of the host with a file in it, and links to both.
    void layBait(const QString& outside) const {
        const macsim::Volume root = volume(Actor::Root);
        for (const QString& made : {u"/private/tmp"_s, outside, u"/Users/alex"_s, u"/Library"_s}) {
            root.createFolders(made);
        }
        root.write(outside + u"/secret"_s, "twin");
        for (const auto& [link, target] :
             {std::pair(u"/Users/alex/out"_s, outside), std::pair(u"/Users/alex/file"_s, outside + u"/secret"_s)}) {
            if (root.kind(link) != macsim::Volume::Kind::Missing) {
                root.remove(link);
            }
            root.createLink(link, target);
        }
    }
    /// Runs any AppleScript through the script engine, as the program would.
    ScriptOutcome runScript(const QString& source) {
        QFuture<ScriptOutcome> future = host->host().scripts.run(source);
        processEventsUntil([&future] { return future.isFinished(); });
        return future.result();
    }
};

QString unguarded(const QString& text) {
    return text;
}

/// Quotes without the doubling of backslashes, which is the easy mistake.
QString onlyQuotesEscaped(QString text) {
    return text.replace(u'"', u"\\\""_s);
}

QString scriptWith(const std::function<QString(QString)>& quoting, const QString& line) {
    return u"do shell script \""_s + quoting(line) + u"\" with administrator privileges"_s;
}

} // namespace

TEST_F(HostileText, aValueInAShellLineStaysAValue) {
    const QStringList values{u"; touch /Library/broken-out"_s, u"$(touch /Library/broken-out)"_s,
                             u"`touch /Library/broken-out`"_s, u"x\ntouch /Library/broken-out\n"_s,
                             u"& touch /Library/broken-out"_s, u"| touch /Library/broken-out"_s,
                             u"> /Library/broken-out"_s};
    for (const QString& value : values) {
        runAsRoot(u"echo "_s + shellWord(value) + u" > /dev/null"_s);
        EXPECT_FALSE(hasBrokenOut()) << value.toStdString();
        runAsRoot(u"echo "_s + unguarded(value) + u" > /dev/null"_s);
        EXPECT_TRUE(hasBrokenOut()) << "without the guard: " << value.toStdString();
        runAsRoot(u"rm -f /Library/broken-out"_s);
    }
}

TEST_F(HostileText, aSingleQuoteDoesNotEndTheQuotedWord) {
    const QString value = u"x' ; touch /Library/broken-out ; '"_s;
    runAsRoot(u"echo "_s + shellQuoted(value));
    EXPECT_FALSE(hasBrokenOut());
    runAsRoot(u"echo '"_s + value + u"'"_s);
    EXPECT_TRUE(hasBrokenOut());
}

TEST_F(HostileText, aNameWithAnApostropheReachesTheShellWhole) {
    runAsRoot(u"echo "_s + shellWord(u"Bob's iPhone"_s) + u" > /Library/name"_s);
    EXPECT_EQ(volume(Actor::Root).read(u"/Library/name"_s), "Bob's iPhone\n");
    // Without the doubling of backslashes the script doesn't even compile.
    const ScriptOutcome outcome = runScript(scriptWith(onlyQuotesEscaped, u"echo "_s + shellWord(u"Bob's iPhone"_s)));
    EXPECT_FALSE(outcome.result.has_value());
}

TEST_F(HostileText, aBackslashBeforeAQuoteDoesNotEndTheScriptsLiteral) {
    // Where the literal ends early, what follows is script, and the line becomes "touch /Library/7".
    const QString line = u"touch /Library/\\\" & 7 with administrator privileges --"_s;
    runScript(scriptWith(appleScriptText, line));
    EXPECT_FALSE(volume(Actor::Root).exists(u"/Library/7"_s));
    runScript(scriptWith(onlyQuotesEscaped, line));
    EXPECT_TRUE(volume(Actor::Root).exists(u"/Library/7"_s));
}

TEST_F(HostileText, aQuoteDoesNotEndTheScriptsLiteral) {
    const QString line =
        u"echo \" & (do shell script \"touch /Library/broken-out\" with administrator privileges) & \""_s;
    runScript(scriptWith(appleScriptText, line));
    EXPECT_FALSE(hasBrokenOut());
    runScript(scriptWith(unguarded, line));
    EXPECT_TRUE(hasBrokenOut());
}

TEST_F(HostileText, aProfilesNameDoesNotEndThePromptsLiteral) {
    UnifiedProfile profile = exampleProfile(u"rehearsal"_s);
    profile.name = u"x\" & (do shell script \"touch /Library/broken-out\" with administrator privileges) & \""_s;
    EXPECT_FALSE(apply(profile));
    EXPECT_FALSE(hasBrokenOut());
    EXPECT_TRUE(authorization.prompts().isEmpty());
    const QString prompt = u"Quorvane needs your administrator password to apply "_s + profile.name + u'.';
    runScript(u"do shell script \"true\" with prompt \""_s + unguarded(prompt) + u"\" with administrator privileges"_s);
    EXPECT_TRUE(hasBrokenOut());
}

TEST_F(HostileText, aBackslashInAProfilesNameIsShownAndEscapesNothing) {
    UnifiedProfile profile = exampleProfile(u"rehearsal"_s);
    profile.name = u"AC\\DC"_s;
    EXPECT_TRUE(apply(profile));
    EXPECT_EQ(authorization.prompts(), QStringList(u"Quorvane needs your administrator password to apply AC\\DC."_s));
}

TEST_F(HostileText, aSecondRunOfAProfileWithAQuoteInItsNameApplies) {
    ASSERT_TRUE(apply(exampleProfile(u"rehearsal"_s)));
    UnifiedProfile profile = exampleProfile(u"rehearsal"_s);
    profile.name = u"7\" mix"_s;
    EXPECT_TRUE(apply(profile));
    EXPECT_EQ(authorization.prompts().last(), u"Quorvane is applying system changes."_s);
}

TEST_F(HostileText, aDoubleQuoteReachesTheShellIntact) {
    runAsRoot(u"echo \"a  b\" > /Library/quoted"_s);
    EXPECT_EQ(volume(Actor::Root).read(u"/Library/quoted"_s), "a  b\n");
}

TEST_F(HostileText, aSearchPathOfTheSessionsLeadsRootToNoPlantedTool) {
    // What calls itself pmset makes the file that it is given.
    const macsim::Volume user = volume(Actor::User);
    user.createFolders(u"/Users/alex/bin"_s);
    user.createLink(u"/Users/alex/bin/pmset"_s, u"/usr/bin/touch"_s);
    ASSERT_EQ(
        run({u"/bin/launchctl"_s, u"setenv"_s, u"PATH"_s, u"/Users/alex/bin:/usr/bin:/bin:/usr/sbin:/sbin"_s}).status,
        0);
    start(); // from the session whose search path it is
    const QString line = u"pmset /Library/broken-out"_s;
    runAsRoot(line);
    EXPECT_FALSE(hasBrokenOut());
    runScript(scriptWith(appleScriptText, line));
    EXPECT_TRUE(hasBrokenOut());
}

TEST_F(HostileText, nothingThatRootRunsReachesTheHost) {
    // Each line has a way to the secret on the host, should a path or a link ever lead out of the Mac. What it reaches
    // instead is the twin: the file at the same path inside.
    QFile secret(folder.path() + u"/secret"_s);
    ASSERT_TRUE(secret.open(QIODevice::WriteOnly));
    secret.write("host");
    secret.close();
    // The root of the disk is sealed; only the host can put a file there.
    QFile top(macFolder() + u"/secret"_s);
    ASSERT_TRUE(top.open(QIODevice::WriteOnly));
    top.write("top");
    top.close();
    const QString outside = folder.path();
    const QString twin = outside + u"/secret"_s;
    const std::optional<QByteArray> gone;
    const struct {
        QString line;
        QString path; ///< where the Mac shows that the line ran
        std::optional<QByteArray> content;
    } cases[] = {{u"rm -rf "_s + outside, twin, gone},
                 {u"rm -rf /../../../../../../../.."_s + twin, twin, gone},
                 {u"cd /Users/alex/out; rm -rf *"_s, twin, gone},
                 {u"rm -rf /Users/alex/out/secret"_s, twin, gone},
                 {u"echo gone > /Users/alex/file"_s, twin, "gone\n"},
                 {u"mv /Users/alex/out/../"_s + QFileInfo(outside).fileName() + u"/secret /Library/moved"_s,
                  u"/Library/moved"_s, "twin"},
                 {u"cat < /Users/alex/file > /Library/copy"_s, u"/Library/copy"_s, "twin"},
                 {u"cat < ../../../../secret > /Library/copy"_s, u"/Library/copy"_s, "top"},
                 {u"rm -rf /*"_s, twin, gone},
                 {u"rm -rf / || echo refused > /Library/refused"_s, u"/Library/refused"_s, "refused\n"}};
    for (const auto& [line, path, content] : cases) {
        SCOPED_TRACE(line.toStdString());
        layBait(outside);
        runAsRoot(line);
        ASSERT_TRUE(secret.open(QIODevice::ReadOnly));
        EXPECT_EQ(secret.readAll(), "host");
        secret.close();
        const macsim::Volume root = volume(Actor::Root);
        EXPECT_EQ(root.exists(path) ? std::optional(root.read(path)) : std::nullopt, content);
    }
    EXPECT_TRUE(QFile::exists(macFolder() + u"/usr/bin/pmset"_s));
}

TEST_F(HostileText, rootsDefaultsWriteRootsPreferences) {
    runAsRoot(u"defaults write com.example.x k -bool YES"_s);
    EXPECT_EQ(run({u"/usr/bin/defaults"_s, u"read"_s, u"com.example.x"_s, u"k"_s}).status, 1);
    EXPECT_TRUE(volume(Actor::Root).exists(u"/var/root/Library/Preferences/com.example.x.plist"_s));
}

} // namespace quorvane
