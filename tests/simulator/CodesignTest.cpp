#include "simulator/tools/Codesign.h"

#include "ToolRun.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

class Codesign : public testing::Test {
protected:
    void SetUp() override {
        for (const QString& name : {u"Chat"_s, u"Notes"_s, u"Tool"_s}) {
            putFile(mac, u"/Applications/"_s + name + u".app/Contents/Info.plist"_s, "x");
        }
        setState(mac, "codeSigning",
                 {{"broken", {"/Applications/Chat.app"}}, {"unsigned", {"/Applications/Notes.app"}}});
    }
    ToolRun verify(const QStringList& words) {
        return runTool(mac, runCodesign, QStringList{u"codesign"_s, u"--verify"_s} + words);
    }

    SimulatedMacFolder mac;
};

} // namespace

TEST_F(Codesign, isSilentWhereTheSealHolds) {
    EXPECT_EQ(verify({u"/Applications/Tool.app"_s}), kSilent);
    mac.mac.state().update("codeSigning", [](Json& state) { state = nullptr; });
    EXPECT_EQ(verify({u"/Applications/Chat.app"_s}), kSilent);
}

TEST_F(Codesign, tellsOfASealThatDoesNotHold) {
    const QByteArray broken = "/Applications/Chat.app: a sealed resource is missing or invalid\n";
    const QByteArray isUnsigned = "/Applications/Notes.app: code object is not signed at all\n";
    EXPECT_EQ(verify({u"/Applications/Chat.app"_s}), (ToolRun{1, {}, broken}));
    EXPECT_EQ(verify({u"/Applications/Notes.app"_s}), (ToolRun{1, {}, isUnsigned}));
    EXPECT_EQ(verify({u"/Applications/Chat.app"_s, u"/Applications/Tool.app"_s, u"/Applications/Notes.app"_s}),
              (ToolRun{1, {}, broken + isUnsigned}));
    EXPECT_EQ(verify({u"/Applications/chat.APP/"_s}).status, 1) << "one application";
    EXPECT_EQ(verify({u"/Applications/Gone.app"_s}),
              (ToolRun{1, {}, "/Applications/Gone.app: No such file or directory\n"}));
}

TEST_F(Codesign, whatIsNotSimulatedFailsLoudly) {
    for (const QStringList& words : {QStringList{},
                                     {u"--verify"_s},
                                     {u"-dv"_s, u"/Applications/Chat.app"_s},
                                     {u"--verify"_s, u"--deep"_s, u"/"_s}}) {
        EXPECT_EQ(runTool(mac, runCodesign, QStringList{u"codesign"_s} + words).status, 70);
    }
}

} // namespace macsim
