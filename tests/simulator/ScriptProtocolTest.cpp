#include "simulator/ScriptProtocol.h"

#include <gtest/gtest.h>

namespace macsim {

using namespace Qt::StringLiterals;
using Kind = ScriptProtocol::Message::Kind;

TEST(ScriptProtocol, eachMessageIsOneLineAndReadsAsItself) {
    const QString text = u"two\nlines \"é\" \\ "_s;
    const struct {
        QByteArray line;
        Kind kind;
    } cases[] = {{ScriptProtocol::source(text), Kind::Source},
                 {ScriptProtocol::authorizationWanted(text), Kind::AuthorizationWanted},
                 {ScriptProtocol::result(text), Kind::Result},
                 {ScriptProtocol::error(text, -128), Kind::Error}};
    for (const auto& [line, kind] : cases) {
        EXPECT_EQ(line.count('\n'), 1);
        EXPECT_TRUE(line.endsWith('\n'));
        EXPECT_EQ(ScriptProtocol::parsed(line).kind, kind);
        EXPECT_EQ(ScriptProtocol::parsed(line).text, text);
    }
}

TEST(ScriptProtocol, anErrorHasItsNumber) {
    EXPECT_EQ(ScriptProtocol::parsed(ScriptProtocol::error(u"User canceled."_s, -128)).number, -128);
    EXPECT_EQ(ScriptProtocol::parsed(R"({"error":"x"})").number, std::nullopt);
    EXPECT_EQ(ScriptProtocol::parsed(R"({"error":"x","number":"-128"})").number, std::nullopt);
    EXPECT_EQ(ScriptProtocol::parsed(ScriptProtocol::result(u"x"_s)).number, std::nullopt);
}

TEST(ScriptProtocol, anAnswerIsOneOfThree) {
    for (const Authorization answer : {Authorization::Allow, Authorization::Deny, Authorization::Cancel}) {
        const ScriptProtocol::Message message = ScriptProtocol::parsed(ScriptProtocol::answer(answer));
        EXPECT_EQ(message.kind, Kind::Answer);
        EXPECT_EQ(message.answer, answer);
    }
    EXPECT_EQ(ScriptProtocol::parsed(R"({"answer":"maybe"})").kind, Kind::Unintelligible);
}

TEST(ScriptProtocol, anythingElseIsUnintelligible) {
    for (const QByteArray& line : {QByteArray(), QByteArray("{"), QByteArray("[]"), QByteArray("{\"result\":1}"),
                                   QByteArray("\xff\xfe"), QByteArray("{\"other\":\"x\"}")}) {
        EXPECT_EQ(ScriptProtocol::parsed(line).kind, Kind::Unintelligible) << line.toStdString();
    }
}

} // namespace macsim
