#include "snapshots/FocusMark.h"

#include "fakes/RestoreSystem.h"

namespace quorvane {

namespace {

const QString kFocusNote = u"/Users/alex/.quorvane/focus-preferences.json"_s;
const QString kExportFocus = u"/usr/bin/defaults export com.apple.ncprefs.plist -"_s;
const QByteArray kMarkAlone = "<dict><key>dnd_enabled</key><true/></dict>";
const QByteArray kFocusBefore = "<dict><key>a &amp; b</key><integer>1</integer><key>dnd_enabled</key><false/></dict>";

class FocusMarks : public RestoreSystem {
protected:
    /// The value of dnd_prefs; nothing where there is no such key.
    void setFocus(const QByteArray& xml) {
        commands.print(kExportFocus, "<plist version=\"1.0\"><dict><key>other</key><true/>" +
                                         (xml.isEmpty() ? xml : "<key>dnd_prefs</key>" + xml) + "</dict></plist>");
    }
    /// The tool writes what it is told to.
    void obey() {
        commands.respond = [this](const QStringList& arguments) -> std::optional<CommandOutcome> {
            if (arguments.value(2) == u"com.apple.ncprefs.plist" && arguments.value(1) == u"delete") {
                setFocus({});
            } else if (arguments.value(2) == u"com.apple.ncprefs.plist" && arguments.value(1) == u"write") {
                setFocus(arguments.last().toUtf8());
            }
            return std::nullopt;
        };
    }
    void record() { QCoro::waitFor(focus.record()); }
    QString restored() {
        trace.clear();
        QCoro::waitFor(focus.restore());
        return takeTrace();
    }

    FocusMark focus{system};
};

} // namespace

TEST_F(FocusMarks, theMarkLeavesEverythingElseAsItIs) {
    EXPECT_EQ(withFocusMark(std::nullopt)->xml(), QString::fromUtf8(kMarkAlone));
    const auto before = TypedValue::ofXml(QString::fromUtf8(kFocusBefore));
    EXPECT_EQ(withFocusMark(before)->xml(), QString::fromUtf8(kFocusBefore).replace(u"<false/>"_s, u"<true/>"_s));
    EXPECT_FALSE(withFocusMark(TypedValue::ofXml(u"<data>AQI=</data>"_s)));
}

TEST_F(FocusMarks, aKeyThatWasAbsentIsDeleted) {
    setFocus({});
    record();
    EXPECT_EQ(files.read(kFocusNote), "{}");
    setFocus(kMarkAlone);
    obey();
    EXPECT_EQ(restored(), u"$> "_s + kExportFocus +
                              u"\n$ /usr/bin/defaults delete com.apple.ncprefs.plist dnd_prefs\n$> "_s + kExportFocus +
                              u"\n  [RESTORED] Preferences of Focus.\n"_s);
    EXPECT_FALSE(files.exists(kFocusNote));
    EXPECT_EQ(restored(), u"\n"_s) << "once";
}

TEST_F(FocusMarks, whatWasThereComesBackWithItsTypes) {
    setFocus(kFocusBefore);
    record();
    setFocus(QByteArray(kFocusBefore).replace("<false/>", "<true/>"));
    obey();
    const QString lines = restored();
    EXPECT_TRUE(lines.contains(QString::fromUtf8(kFocusBefore))) << lines.toStdString();
    EXPECT_TRUE(lines.endsWith(u"  [RESTORED] Preferences of Focus.\n"_s));
}

TEST_F(FocusMarks, whatSomebodyHasChangedSinceStays) {
    setFocus({});
    record();
    setFocus(kFocusBefore);
    EXPECT_EQ(restored(), u"$> "_s + kExportFocus + u'\n');
    EXPECT_FALSE(files.exists(kFocusNote));
}

TEST_F(FocusMarks, nothingIsClaimedThatDidNotComeBack) {
    setFocus({});
    record();
    setFocus(kMarkAlone); // whatever is written
    EXPECT_TRUE(restored().endsWith(u"  [INFO] Not restored: the preferences of Focus\n"_s));
    EXPECT_TRUE(files.exists(kFocusNote)) << "it is tried again";
    commands.fail(kExportFocus, 1);
    EXPECT_EQ(restored(), u"$> "_s + kExportFocus + u"\n  [INFO] Not restored: the preferences of Focus\n"_s);
}

TEST_F(FocusMarks, whatCannotBeReadOrMarkedIsNotNoted) {
    commands.fail(kExportFocus, 1);
    record();
    EXPECT_FALSE(files.exists(kFocusNote));
    setFocus("<data>AQI=</data>");
    record();
    EXPECT_FALSE(files.exists(kFocusNote));
    setFocus(kMarkAlone);
    record();
    EXPECT_FALSE(files.exists(kFocusNote)) << "it is marked already";
}

TEST_F(FocusMarks, theFirstNoteCounts) {
    setFocus({});
    record();
    setFocus(kMarkAlone);
    trace.clear();
    record();
    EXPECT_EQ(trace, QStringList());
    EXPECT_EQ(files.read(kFocusNote), "{}");
}

TEST_F(FocusMarks, ofADamagedNoteNothingIsWritten) {
    for (const QByteArray& note :
         {QByteArray("no JSON"), QByteArray(R"({"before": "<dict>"})"), QByteArray(R"({"before": 1})")}) {
        files.addFile(kFocusNote, note);
        setFocus(kMarkAlone);
        const QString lines = restored();
        EXPECT_TRUE(lines.endsWith(u"  [INFO] Not restored: the preferences of Focus\n"_s));
        EXPECT_FALSE(lines.contains(u"delete"_s));
    }
}

TEST_F(FocusMarks, everyWayBackBringsThemBack) {
    obey();
    for (const bool isWhole : {true, false}) {
        files.addFile(kFocusNote, "{}");
        setFocus(kMarkAlone);
        QCoro::waitFor(isWhole ? system.reinstateSystem() : system.revertPerformanceTweaks());
        EXPECT_TRUE(takeTrace().contains(u"  [RESTORED] Preferences of Focus.\n"_s));
        save(usersOwn());
    }
    files.addFile(kFocusNote, "{}");
    setFocus(kMarkAlone);
    QCoro::waitFor(system.reinstateSystem());
    EXPECT_TRUE(takeTrace().contains(u"  [RESTORED] Preferences of Focus.\n"_s));
}

} // namespace quorvane
