#include "json/ScriptProtocol.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;
using Kind = ScriptProtocol::Message::Kind;

TEST(ScriptProtocol, eachMessageIsOneLineAndReadsAsItself) {
    const QString text = u"two\nlines \"é\" \\ "_s;
    const struct {
        QByteArray line;
        Kind kind;
    } cases[] = {{ScriptProtocol::source(text), Kind::Source},
                 {ScriptProtocol::answer(text), Kind::Answer},
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

TEST(ScriptProtocol, anErrorMayHaveANumber) {
    EXPECT_EQ(ScriptProtocol::parsed(ScriptProtocol::error(u"User canceled."_s, -128)).number, -128);
    EXPECT_EQ(ScriptProtocol::parsed(ScriptProtocol::error(u"x"_s, std::nullopt)).number, std::nullopt);
    for (const char* number : {"\"-128\"", "-128.5", "9000000000", "18446744073709551615"}) {
        const QByteArray line = QByteArray("{\"error\":\"x\",\"number\":") + number + '}';
        EXPECT_EQ(ScriptProtocol::parsed(line).kind, Kind::Error) << number;
        EXPECT_EQ(ScriptProtocol::parsed(line).number, std::nullopt) << number;
    }
    EXPECT_EQ(ScriptProtocol::parsed(R"({"result":"x","number":1})").number, std::nullopt);
}

TEST(ScriptProtocol, anythingElseIsUnintelligible) {
    for (const QByteArray& line : {QByteArray(), QByteArray("{"), QByteArray("[]"), QByteArray("{\"result\":1}"),
                                   QByteArray("\xff\xfe"), QByteArray("{\"other\":\"x\"}")}) {
        EXPECT_EQ(ScriptProtocol::parsed(line).kind, Kind::Unintelligible) << line.toStdString();
    }
}

} // namespace quorvane
