#include "readings/ExportedPreferences.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

QString exported(const QString& entries) {
    return u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n<dict>\n"_s +
           entries + u"</dict>\n</plist>\n"_s;
}

/// The value's XML, "not set", or "unanswered".
QString valueIn(const QString& xml, const QString& key) {
    const auto values = exportedValues(xml, {key});
    const Reading<TypedValue> reading = values ? values->value(key) : Reading<TypedValue>::unanswered();
    if (!reading.isAnswered) {
        return u"unanswered"_s;
    }
    return reading.value ? reading.value->xml() : u"not set"_s;
}

} // namespace

TEST(ExportedPreferences, areFoundAmongAllOthers) {
    const QString xml =
        exported(u"\t<key>other</key>\n\t<dict>\n\t\t<key>wanted</key>\n\t\t<true/>\n\t</dict>\n"
                 "\t<key>wanted</key>\n\t<string> x </string>\n\t<key>last</key>\n\t<integer>7</integer>\n"_s);
    EXPECT_EQ(valueIn(xml, u"wanted"_s), u"<string> x </string>"_s);
    EXPECT_EQ(valueIn(xml, u"last"_s), u"<integer>7</integer>"_s);
    EXPECT_EQ(valueIn(xml, u"missing"_s), u"not set"_s);
    EXPECT_EQ(valueIn(exported({}), u"missing"_s), u"not set"_s);
    EXPECT_EQ(valueIn(exported(u"<key>a \"b\" &amp; c</key><false/>"_s), u"a \"b\" & c"_s), u"<false/>"_s);
    EXPECT_EQ(valueIn(exported(u"<key>old</key><string>a\rb</string>"_s), u"old"_s), u"<string>a&#13;b</string>"_s);
}

TEST(ExportedPreferences, thatCannotBeKeptAreUnansweredAndTheOthersAreNot) {
    const QString odd = u"<key>odd</key><uid>1</uid><key>deep</key>"_s + u"<array>"_s.repeated(20) +
                        u"</array>"_s.repeated(20) + u"<key>large</key><string>"_s + QString(70000, u'x') +
                        u"</string><key>good</key><true/>"_s;
    for (const QString& key : {u"odd"_s, u"deep"_s, u"large"_s}) {
        EXPECT_EQ(valueIn(exported(odd), key), u"unanswered"_s);
    }
    EXPECT_EQ(valueIn(exported(odd), u"good"_s), u"<true/>"_s);
}

TEST(ExportedPreferences, ofWhatIsNoWholeListAreUnanswered) {
    const QString whole = exported(u"<key>key</key><true/>"_s);
    EXPECT_EQ(valueIn(whole, u"key"_s), u"<true/>"_s);
    const qsizetype end = whole.indexOf(u"</plist>"_s) + 8;
    for (qsizetype size = 0; size < end; ++size) {
        EXPECT_EQ(valueIn(whole.left(size), u"key"_s), u"unanswered"_s) << size;
    }
    for (const QString& xml : {u"{ key = 1; }"_s, u"<dict><key>key</key><true/></dict>"_s,
                               u"<plist><array><true/></array></plist>"_s, exported(u"<true/><key>key</key>"_s),
                               exported(u"<key>key</key>"_s), whole + u"<plist/>"_s, whole + u"tail"_s}) {
        EXPECT_EQ(valueIn(xml, u"key"_s), u"unanswered"_s) << xml.toStdString();
    }
}

TEST(ExportedPreferences, areKnownByTheirPlaces) {
    EXPECT_EQ(placeOf(preference::kAssistant), u"com.apple.assistant.support Assistant Enabled"_s);
    EXPECT_EQ(placeOf(preference::kDoNotDisturb), u"-currentHost com.apple.notificationcenterui doNotDisturb"_s);
    const TypedReadings readings{{u"a b"_s, Reading<TypedValue>::answered(TypedValue::ofXml(u"<true/>"_s))},
                                 {u"a c"_s, Reading<TypedValue>::answered(std::nullopt)},
                                 {u"a d"_s, Reading<TypedValue>::unanswered()}};
    EXPECT_EQ(valuesIn(readings), (TypedValues{{u"a b"_s, *TypedValue::ofXml(u"<true/>"_s)}}));
}

} // namespace quorvane
