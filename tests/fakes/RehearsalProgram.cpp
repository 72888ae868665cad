#include "fakes/RehearsalProgram.h"

namespace quorvane {

RehearsalTest::RehearsalTest(const QStringList& description) {
    EXPECT_EQ(rehearse(QStringList(u"new"_s) + description).status, 0);
}

QString RehearsalTest::example(const QString& name) {
    return QStringLiteral(QUORVANE_SOURCE_DIR "/examples/profiles/") + name + u".json"_s;
}

QString RehearsalTest::macFolder() const {
    return folder.path() + u"/Mac"_s;
}

Ending RehearsalTest::rehearse(const QStringList& arguments, std::optional<rlim_t> largestFile) {
    return start(QStringList{u"--mac"_s, macFolder()} + arguments, largestFile);
}

Ending RehearsalTest::start(const QStringList& arguments, std::optional<rlim_t> largestFile) {
    QProcess process;
    if (largestFile) {
        process.setChildProcessModifier([bytes = *largestFile] {
            const rlimit limit{bytes, bytes};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            ::signal(SIGXFSZ, SIG_IGN); // the write fails instead
        });
    }
    process.start(QStringLiteral(REHEARSAL_PROGRAM), arguments);
    EXPECT_TRUE(process.waitForFinished(240000)); // only a hang takes so long
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, process.readAllStandardOutput(),
            process.readAllStandardError()};
}

QByteArray RehearsalTest::shell(const QString& line) {
    return rehearse({u"shell"_s, line}).output;
}

QString RehearsalTest::file(const QString& name, const QByteArray& bytes) {
    QFile made(folder.path() + u'/' + name);
    EXPECT_TRUE(made.open(QIODevice::WriteOnly | QIODevice::Truncate));
    made.write(bytes);
    return made.fileName();
}

void RehearsalTest::expectRefused(const QStringList& arguments, const QByteArray& line) {
    const macsim::MacPicture before(macFolder());
    const Ending run = rehearse(arguments);
    EXPECT_EQ(run.status, 2) << arguments.join(u' ').toStdString();
    EXPECT_EQ(run.output, QByteArray());
    EXPECT_EQ(run.error.toStdString(), line.toStdString());
    EXPECT_EQ(macsim::MacPicture(macFolder()).changesSince(before), QString());
}

} // namespace quorvane
