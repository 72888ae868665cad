// What the rehearsal prints where names are hostile, and what it does where nobody reads it any more.

#include "fakes/RehearsalProgram.h"
#include "profiles/ProfileJson.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane {

namespace {

/// A line end, an escape sequence and characters that turn the text.
const QString kHostile = u"Live\n  [OK] Done\u001b[2J\u202egig\u2028\u0085\u2066x"_s;
const QByteArray kHostileShown = "Live   [OK] Done [2J gig   x";

class RehearsalTerminal : public RehearsalTest {
protected:
    QString profileNamed(const QString& name, const QString& id = {}) {
        UnifiedProfile profile = exampleProfile(u"live-set"_s);
        profile.name = name;
        if (!id.isEmpty()) {
            profile.id = QUuid(id);
        }
        return file(u"profile.json"_s, encodeProfile(profile));
    }
    static void expectPlain(const Ending& run) {
        for (const QByteArray& text : {run.output, run.error}) {
            const QString shown = QString::fromUtf8(text);
            for (const QChar character : shown) {
                const bool isPlain = character == u'\n' || character.isPrint() || character.isSurrogate();
                EXPECT_TRUE(isPlain) << "U+" << std::hex << static_cast<unsigned>(character.unicode()) << " in "
                                     << text.toStdString();
            }
        }
    }
    macsim::Mac mac() const { return macsim::Mac(macFolder()); }
    QString profiles() const {
        return macFolder() + u"/Users/alex/Library/Application Support/Quorvane/UnifiedProfiles"_s;
    }
};

/// The read end of a program's output.
class Reader {
public:
    explicit Reader(const QString& path) {
        EXPECT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        m_descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        ::fcntl(m_descriptor, F_SETFL, 0); // it opened without a writer; from here on it waits for one
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader() { close(); }

    /// False when the output ends before that.
    bool readUntil(const QByteArray& text) {
        QByteArray read;
        char byte = 0;
        while (!read.contains(text)) {
            if (::read(m_descriptor, &byte, 1) != 1) {
                return false;
            }
            read += byte;
        }
        return true;
    }
    void close() {
        ::close(m_descriptor);
        m_descriptor = -1;
    }

private:
    int m_descriptor = -1;
};

} // namespace

// ---- Names

TEST_F(RehearsalTerminal, aHostileNameStaysOnItsLine) {
    const QString profile = profileNamed(kHostile);
    for (const QString& command : {u"preview"_s, u"apply"_s, u"verify"_s, u"tweaks"_s}) {
        const Ending run = rehearse({command, profile});
        SCOPED_TRACE(command.toStdString());
        EXPECT_FALSE(run.output.contains("\n  [OK] Done"));
        expectPlain(run);
    }
    EXPECT_TRUE(rehearse({u"preview"_s, profile}).output.startsWith("Review Profile: " + kHostileShown + "\n"));
}

TEST_F(RehearsalTerminal, aHostileItemAndADisplayStayOnTheirLines) {
    shell(u"osascript -e 'tell application \"System Events\" to make login item at end with properties "
          "{path:\"/Applications/Evil\u202e\u001b[2J.app\", hidden:false}'"_s);
    mac().state().update("displays", [](macsim::Json& displays) {
        displays = {{{"number", 1},
                     {"localizedName", kHostile.toStdString()},
                     {"frame", {0, 0, 640, 400}},
                     {"picture", "/nowhere/" + kHostile.toStdString()}}};
    });
    const Ending discovered = rehearse({u"discover"_s});
    EXPECT_TRUE(discovered.output.contains("/Applications/Evil  [2J.app\n")) << discovered.output.toStdString();
    expectPlain(discovered);
    const Ending shown = rehearse({u"overlay"_s, u"--off"_s});
    EXPECT_TRUE(shown.output.contains(kHostileShown + ": /nowhere/" + kHostileShown + "\n"))
        << shown.output.toStdString();
    expectPlain(shown);
}

TEST_F(RehearsalTerminal, aComplaintAboutAFileIsOneLine) {
    const QString odd = file(u"odd\n\u202e\u001b[2J.json"_s, "[]");
    QByteArray shown = odd.toUtf8();
    shown.replace("\n", " ").replace("\u202e", " ").replace("\x1b", " ");
    expectRefused({u"apply"_s, odd}, shown + ": not a profile: not an object\n");
    expectRefused({u"loud\n\u202ecommand"_s}, "quorvane-rehearsal: unknown command: loud  command\n");

    macsim::Json profile = macsim::Json::parse(projectFile(u"examples/profiles/live-set.json"_s).toStdString());
    profile["settings"]["customIcons"] = {{"bad\nkey\u202e\u2028", 1}};
    const QString hostile = file(u"hostile.json"_s, QByteArray::fromStdString(profile.dump()));
    expectRefused({u"apply"_s, hostile}, hostile.toUtf8() + ": not a profile: \"settings.customIcons.bad\\nkey  \": "
                                                            "not a string\n");
}

TEST_F(RehearsalTerminal, aNameThatCannotBeSavedGivesOneLine) {
    for (const QString& name : {QString(300, u'x'), kHostile + QString(300, u'\n') + u'x', QString(130, u'é')}) {
        const Ending run = rehearse({u"apply"_s, profileNamed(name)});
        EXPECT_EQ(run.status, 2) << "before anything is changed";
        EXPECT_EQ(run.output, QByteArray());
        EXPECT_TRUE(run.error.endsWith(": Profile name is invalid.\n")) << run.error.toStdString();
        EXPECT_EQ(run.error.count('\n'), 1);
        EXPECT_EQ(QDir(profiles()).entryList(QDir::Files), QStringList());
    }
}

// ---- Another profile of that name

TEST_F(RehearsalTerminal, anotherProfileOfTheNameIsReplacedOnlyWhereThatIsAskedFor) {
    ASSERT_EQ(rehearse({u"apply"_s, example(u"live-set"_s)}).status, 0);
    ASSERT_EQ(rehearse({u"apply"_s, example(u"live-set"_s)}).status, 0) << "the same one may come again";
    const QString other = profileNamed(u" LIVE Set"_s, u"00000000-0000-4000-8000-00000000000a"_s);
    expectRefused({u"apply"_s, other},
                  other.toUtf8() + ": another profile is saved as \"LIVE Set\"; --replace replaces it\n");
    EXPECT_EQ(rehearse({u"apply"_s, u"--replace"_s, other}).status, 0);
    EXPECT_EQ(QDir(profiles()).entryList(QDir::Files), QStringList(u"LIVE Set.json"_s));

    shell(u"echo damaged > ~/Library/'Application Support'/Quorvane/UnifiedProfiles/'LIVE Set.json'"_s);
    expectRefused({u"apply"_s, other}, other.toUtf8() + ": a file that can't be read is saved as \"LIVE Set\"; "
                                                        "--replace replaces it\n");
    EXPECT_EQ(rehearse({u"apply"_s, other, u"--replace"_s}).status, 0);
}

// ---- Arguments

TEST_F(RehearsalTerminal, anEmptyValueIsNone) {
    for (const QString& option : {u"--mac"_s, u"--faults"_s, u"--journal"_s, u"--authorize"_s}) {
        const Ending run = start({option, QString(), u"scan"_s});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.error, "quorvane-rehearsal: " + option.toUtf8() + ": a value is missing\n");
    }
}

// ---- A pipe that nobody reads

TEST_F(RehearsalTerminal, aClosedPipeIsAQuit) {
    const QString temporary = folder.path() + u"/tmp"_s;
    ASSERT_TRUE(QDir().mkdir(temporary));
    Reader reader(folder.path() + u"/output"_s);
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"TMPDIR"_s, temporary);
    process.setProcessEnvironment(environment);
    process.setStandardOutputFile(folder.path() + u"/output"_s);
    process.start(QStringLiteral(REHEARSAL_PROGRAM), {u"apply"_s, example(u"live-set"_s)});
    ASSERT_TRUE(reader.readUntil("[PROFILE] Applying"));
    reader.close();
    ASSERT_TRUE(process.waitForFinished(240000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_EQ(process.readAllStandardError(), QByteArray());
    EXPECT_EQ(QDir(temporary).entryList({u"quorvane-rehearsal-*"_s}), QStringList())
        << "the temporary Mac goes, as at every end";
}

TEST_F(RehearsalTerminal, aPipeThatClosesBehindThePromptIsAQuitToo) {
    const QString journal = folder.path() + u"/journal"_s;
    const auto commandsRun = [&journal] {
        QFile commands(journal);
        EXPECT_TRUE(commands.open(QIODevice::ReadOnly));
        return commands.readAll().count('\n');
    };
    ASSERT_EQ(start({u"--mac"_s, macFolder(), u"--journal"_s, journal, u"default"_s}).status, 0);
    const qsizetype whole = commandsRun();
    QFile::remove(journal);

    Reader reader(folder.path() + u"/output"_s);
    QProcess process;
    process.setStandardOutputFile(folder.path() + u"/output"_s);
    process.start(QStringLiteral(REHEARSAL_PROGRAM), {u"--mac"_s, macFolder(), u"--journal"_s, journal, u"default"_s});
    ASSERT_TRUE(reader.readUntil("Requesting Admin rights"));
    reader.close();
    ASSERT_TRUE(process.waitForFinished(240000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_LT(commandsRun(), whole) << "what follows the prompt isn't carried out";
}

TEST_F(RehearsalTerminal, aReportThatCannotBeWrittenIsNotDone) {
    ASSERT_EQ(rehearse({u"discover"_s, u"--json"_s}).status, 0);
    QProcess process;
    process.setStandardOutputFile(u"/dev/full"_s);
    process.start(QStringLiteral(REHEARSAL_PROGRAM), {u"--mac"_s, macFolder(), u"discover"_s, u"--json"_s});
    ASSERT_TRUE(process.waitForFinished(240000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 1);
}

} // namespace quorvane
