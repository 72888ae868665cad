// A profile of 50 MiB is read in memory that grows with its size and no faster, and within the time of a test.

#include "fakes/MeasuredRehearsal.h"
#include "profiles/ProfileJson.h"

namespace quorvane {

namespace {

constexpr qint64 kMebibyte = qint64{1024} * 1024;

class LargeProfile : public MeasuredRehearsal {
protected:
    /// A profile of at least this size, all of whose startup items run.
    QString profileOfSize(qint64 size) const {
        const QByteArray text = encodeProfile(emptyProfile());
        const qsizetype place = text.indexOf("\"items\": [") + qsizetype(qstrlen("\"items\": ["));
        QFile file(folder.path() + u"/%1.json"_s.arg(size));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.left(place));
        // Written piece by piece, to stay small.
        for (int number = 0; number == 0 || file.pos() < size; ++number) {
            const QByteArray path = "/Applications/App " + QByteArray::number(number) + ".app";
            file.write(number == 0 ? "\n" : ",\n");
            file.write(R"({"id": "login:)" + path + R"(", "name": "App", "path": ")" + path +
                       R"(", "kind": "loginApp", "runsAtStartup": true, "hidden": false, "isProtected": false})");
        }
        file.write(text.mid(place));
        return file.fileName();
    }

    /// A file with this many line ends in the middle.
    QString fileWithLineEnds(int mebibytes, const QByteArray& before = {}, const QByteArray& behind = {}) const {
        QFile file(folder.path() + u"/%1 MiB.json"_s.arg(mebibytes));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(before);
        const QByteArray lineEnds(kMebibyte, '\n');
        for (int written = 0; written < mebibytes; ++written) {
            file.write(lineEnds);
        }
        file.write(behind);
        return file.fileName();
    }

    /// Verifies the profile and gives the peak of the memory that this took.
    long peakOfVerifying(const QString& profile) {
        const MeasuredEnding run = rehearse({u"verify"_s, profile});
        EXPECT_TRUE(run.status == 0 || run.status == 1) << run.status << ' ' << run.error.toStdString();
        EXPECT_TRUE(run.output.contains("[VERIFY] Profile: Large\n")) << run.output.toStdString();
        EXPECT_EQ(run.error, QByteArray());
        return run.peakMemory;
    }

private:
    static UnifiedProfile emptyProfile() {
        UnifiedProfile profile;
        profile.id = QUuid::createUuid();
        profile.name = u"Large"_s;
        profile.dateCreated = QDateTime(QDate(2026, 1, 1), QTime(12, 0), Qt::UTC);
        return profile;
    }
};

} // namespace

TEST_F(LargeProfile, theMemoryOfReadingGrowsWithTheSizeAndNoFaster) {
    const long base = peakOfVerifying(profileOfSize(0));
    const long five = peakOfVerifying(profileOfSize(5 * kMebibyte)) - base;
    const long fifty = peakOfVerifying(profileOfSize(50 * kMebibyte)) - base;
    EXPECT_GT(five, 5 * 1024) << "the peak of something else was measured";
    EXPECT_LE(fifty, 12 * five) << "base " << base << " KiB, for 5 MiB " << five << " KiB more";
}

// The library that reads JSON keeps the blanks before a token, and spells them out in an error of its own.
TEST_F(LargeProfile, aFileOfLineEndsCostsLittleMoreThanItsSize) {
    const long base = rehearse({u"verify"_s, fileWithLineEnds(0)}).peakMemory;
    const MeasuredEnding run = rehearse({u"verify"_s, fileWithLineEnds(50)});
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(run.error.endsWith(": not a profile: not valid JSON (line 52428801)\n")) << run.error.toStdString();
    EXPECT_LE(run.peakMemory - base, 2 * 50 * 1024);
}

TEST_F(LargeProfile, lineEndsBetweenItsTokensCostLittleMoreThanTheirSize) {
    QFile plain(profileOfSize(0));
    ASSERT_TRUE(plain.open(QIODevice::ReadOnly));
    const QByteArray text = plain.readAll();
    const qsizetype place = text.indexOf(',');
    const long base = peakOfVerifying(plain.fileName());
    const QString large = fileWithLineEnds(50, text.left(place), text.mid(place));
    EXPECT_LE(peakOfVerifying(large) - base, 2 * 50 * 1024);
}

TEST_F(LargeProfile, aTruncatedOneIsRefusedWithOneLine) {
    QFile file(profileOfSize(50 * kMebibyte));
    ASSERT_TRUE(file.resize(50 * kMebibyte));
    const MeasuredEnding run = rehearse({u"verify"_s, file.fileName()});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.output, QByteArray());
    EXPECT_TRUE(run.error.startsWith(file.fileName().toUtf8() + ": not a profile: not valid JSON (line "))
        << run.error.toStdString();
    EXPECT_EQ(run.error.count('\n'), 1);
    EXPECT_TRUE(run.error.endsWith('\n'));
}

} // namespace quorvane
