#include "readings/TypedValue.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

using Type = TypedValue::Type;

QString canonical(const QString& xml) {
    const std::optional<TypedValue> value = TypedValue::ofXml(xml);
    return value ? value->xml() : u"none"_s;
}

QString nested(int depth) {
    return u"<array>"_s.repeated(depth) + u"</array>"_s.repeated(depth);
}

} // namespace

TEST(TypedValue, hasEachTypeOfAPropertyList) {
    struct Case {
        QString xml;
        Type type;
        QString text;
    };
    for (const Case& one :
         QList<Case>{{u"<true/>"_s, Type::Boolean, u"true"_s},
                     {u"<false></false>"_s, Type::Boolean, u"false"_s},
                     {u"<integer>-3</integer>"_s, Type::Integer, u"-3"_s},
                     {u"<integer>+007</integer>"_s, Type::Integer, u"7"_s},
                     {u"<integer>18446744073709551615</integer>"_s, Type::Integer, u"18446744073709551615"_s},
                     {u"<real>0.50</real>"_s, Type::Real, u"0.5"_s},
                     {u"<real>6.02e23</real>"_s, Type::Real, u"6.02e+23"_s},
                     {u"<string> x &lt;&amp; </string>"_s, Type::String, u" x <& "_s},
                     {u"<string/>"_s, Type::String, u""_s},
                     {u"<date>2026-03-14T20:30:00Z</date>"_s, Type::Date, u"2026-03-14T20:30:00Z"_s},
                     {u"<data>\n\t3q2+\n\t7w==\n\t</data>"_s, Type::Data, u"3q2+7w=="_s},
                     {u"<data></data>"_s, Type::Data, u""_s},
                     {u"<array> <true/> </array>"_s, Type::Array, u""_s},
                     {u"<dict/>"_s, Type::Dictionary, u""_s}}) {
        const std::optional<TypedValue> value = TypedValue::ofXml(one.xml);
        ASSERT_TRUE(value) << one.xml.toStdString();
        EXPECT_EQ(value->type(), one.type) << one.xml.toStdString();
        EXPECT_EQ(value->text(), one.text) << one.xml.toStdString();
        EXPECT_EQ(TypedValue::ofXml(value->xml()), value) << "what it keeps says the same";
    }
}

TEST(TypedValue, isKeptInOneWayAlone) {
    EXPECT_EQ(canonical(u"<dict>\n<key>b</key><integer>1</integer>\n<key>a&amp;</key>\n<array>\n</array></dict>"_s),
              u"<dict><key>a&amp;</key><array></array><key>b</key><integer>1</integer></dict>"_s);
    EXPECT_EQ(canonical(u"<string>a&#13;b \"c\"</string>"_s), u"<string>a&#13;b \"c\"</string>"_s);
    EXPECT_EQ(canonical(u"<real>1e-9</real>"_s), u"<real>1e-09</real>"_s);
    EXPECT_NE(canonical(u"<integer>1</integer>"_s), canonical(u"<real>1</real>"_s));
}

TEST(TypedValue, isNoneForWhatIsNoValue) {
    for (const QString& xml : {u""_s,
                               u"1"_s,
                               u"<integer/>"_s,
                               u"<integer>one</integer>"_s,
                               u"<integer>1"_s,
                               u"<integer>18446744073709551616</integer>"_s,
                               u"<real>nan</real>"_s,
                               u"<real>inf</real>"_s,
                               u"<true>yes</true>"_s,
                               u"<date>yesterday</date>"_s,
                               u"<data>*</data>"_s,
                               u"<string><b/></string>"_s,
                               u"<key>a</key>"_s,
                               u"<uid>1</uid>"_s,
                               u"<array><uid>1</uid></array>"_s,
                               u"<dict><key>a</key></dict>"_s,
                               u"<dict><true/></dict>"_s,
                               u"<true/><true/>"_s,
                               u"<true/> tail"_s,
                               u"<plist><true/></plist>"_s}) {
        EXPECT_EQ(canonical(xml), u"none"_s) << xml.toStdString();
    }
}

TEST(TypedValue, isBounded) {
    EXPECT_TRUE(TypedValue::ofXml(nested(16)));
    EXPECT_FALSE(TypedValue::ofXml(nested(17)));
    EXPECT_FALSE(TypedValue::ofXml(nested(9000)));
    const auto textOf = [](qsizetype size) { return u"<string>"_s + QString(size, u'x') + u"</string>"_s; };
    const qsizetype around = u"<string></string>"_s.size();
    EXPECT_TRUE(TypedValue::ofXml(textOf(TypedValue::kMaximumSize - around)));
    EXPECT_FALSE(TypedValue::ofXml(textOf(TypedValue::kMaximumSize - around + 1)));
    EXPECT_FALSE(TypedValue::ofXml(u"<string>"_s + QString(20000, u'&').replace(u"&"_s, u"&#38;"_s) + u"</string>"_s));
}

TEST(TypedValue, knowsHowItIsPrinted) {
    const auto prints = [](const QString& xml, const QString& text) {
        return TypedValue::ofXml(xml)->isPrintedAs(text);
    };
    EXPECT_TRUE(prints(u"<true/>"_s, u"1"_s));
    EXPECT_FALSE(prints(u"<false/>"_s, u"1"_s));
    EXPECT_TRUE(prints(u"<string> padded\n</string>"_s, u"padded"_s));
    EXPECT_FALSE(prints(u"<string>other</string>"_s, u"padded"_s));
    EXPECT_TRUE(prints(u"<real>6.02e23</real>"_s, u"6.02e23"_s));
    EXPECT_TRUE(prints(u"<real>0.1</real>"_s, u"0.1000000014901161"_s));
    EXPECT_TRUE(prints(u"<real>0</real>"_s, u"0"_s));
    EXPECT_FALSE(prints(u"<real>0.5</real>"_s, u"0.6"_s));
    EXPECT_FALSE(prints(u"<real>0</real>"_s, u"zero"_s));
    EXPECT_TRUE(prints(u"<date>2026-03-14T20:30:00Z</date>"_s, u"2026-03-14 20:30:00 +0000"_s));
    EXPECT_TRUE(prints(u"<data>3q2+7w==</data>"_s, u"{length = 4, bytes = 0xdeadbeef}"_s));
    EXPECT_TRUE(prints(u"<data>3q2+7w==</data>"_s, u"<deadbeef>"_s));
    EXPECT_TRUE(prints(u"<array/>"_s, u"(\n)"_s));
    EXPECT_FALSE(prints(u"<array/>"_s, u"{\n}"_s));
    EXPECT_TRUE(prints(u"<dict/>"_s, u"{\n}"_s));
}

} // namespace quorvane
