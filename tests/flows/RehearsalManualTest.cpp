// What the manual's converter makes of a file, as a person tries it from a terminal.

#include "fakes/RehearsalProgram.h"

#include <QDir>

namespace quorvane {

namespace {

using RehearsalManual = RehearsalTest;

} // namespace

TEST_F(RehearsalManual, printsTheHtml) {
    const Ending run = start({u"manual"_s, file(u"manual.md"_s, "# Gig\nA **bold** plan:\n- one\n- two")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.error, QByteArray());
    EXPECT_EQ(run.output, "<h1>Gig</h1>\n<p>A <strong>bold</strong> plan:</p>\n<ul><li>one</li><li>two</li></ul>\n");
}

TEST_F(RehearsalManual, printsAllOfATextWithNullCharacters) {
    const Ending run = start({u"manual"_s, file(u"manual.md"_s, QByteArray("a\0b", 3))});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, QByteArray("<p>a\0b</p>\n", 11));
}

TEST_F(RehearsalManual, refusesWhatItCannotRead) {
    for (const QString& path : {u"/nowhere.md"_s, file(u"latin.md"_s, "caf\xe9")}) {
        const Ending run = start({u"manual"_s, path});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.output, QByteArray());
        EXPECT_TRUE(run.error.startsWith("quorvane-rehearsal: " + path.toUtf8() + ": ")) << run.error.toStdString();
    }
}

} // namespace quorvane
