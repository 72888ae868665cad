#include "startup/background/BackgroundTaskList.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

BackgroundTaskItem dumpedRecord(const QString& name, const QString& type, const QString& identifier,
                                const std::optional<QString>& parent = std::nullopt) {
    return {name, std::nullopt, identifier, type, u"[enabled, allowed, notified] (0xb)"_s, parent, {}, {}};
}

QStringList namesIn(const QList<BackgroundTaskItem>& items) {
    QStringList names;
    for (const BackgroundTaskItem& item : items) {
        names.append(item.name);
    }
    return names;
}

QString parentName(const BackgroundTaskList& list, const std::optional<QString>& parentIdentifier) {
    const BackgroundTaskItem* parent =
        list.parentOf(dumpedRecord(u"child"_s, u"agent (0x8)"_s, u"8.child"_s, parentIdentifier));
    return parent == nullptr ? u"none"_s : parent->name;
}

TEST(BackgroundTaskList, recordsAreFoundByTheirExactLabelInTheOrderOfTheDump) {
    BackgroundTaskItem byBundle = dumpedRecord(u"second"_s, u"agent"_s, u"8.other"_s);
    byBundle.bundleIdentifier = u"com.a"_s;
    const BackgroundTaskList list({dumpedRecord(u"first"_s, u"agent"_s, u"8.com.a"_s), byBundle,
                                   dumpedRecord(u"third"_s, u"agent"_s, u"8.com.A"_s),
                                   dumpedRecord(u"nobody"_s, u"agent"_s, u"nothing"_s)});
    EXPECT_EQ(namesIn(list.itemsWithLabel(u"com.a"_s)), (QStringList{u"first"_s, u"second"_s}));
    EXPECT_EQ(namesIn(list.itemsWithLabel(u"com.A"_s)), QStringList(u"third"_s));
    EXPECT_TRUE(list.contains(u"com.a"_s));
    EXPECT_TRUE(list.contains(u"nothing"_s)) << "an identifier may come without the number of its type";
    for (const QString& label : {u""_s, u"other"_s, u"8.com.a"_s}) {
        SCOPED_TRACE(label.toStdString());
        EXPECT_TRUE(list.itemsWithLabel(label).isEmpty());
        EXPECT_FALSE(list.contains(label));
    }
}

TEST(BackgroundTaskList, theParentIsTheFirstApplicationWithItsLabelInAnyCase) {
    const BackgroundTaskList list({dumpedRecord(u"agent"_s, u"agent (0x8)"_s, u"8.com.example.app"_s),
                                   dumpedRecord(u"first"_s, u"app (0x2)"_s, u"2.com.Example.App"_s),
                                   dumpedRecord(u"second"_s, u"app (0x2)"_s, u"2.com.example.app"_s),
                                   dumpedRecord(u"developer"_s, u"developer (0x20)"_s, u"Example Inc"_s)});
    EXPECT_EQ(parentName(list, u"2.com.example.app"_s), u"first"_s);
    EXPECT_EQ(parentName(list, u"2.COM.EXAMPLE.APP"_s), u"first"_s);
    EXPECT_EQ(parentName(list, u"com.example.app"_s), u"first"_s);
    for (const std::optional<QString>& identifier :
         {std::optional<QString>(), std::optional(u""_s), std::optional(u"2."_s), std::optional(u"Example Inc"_s),
          std::optional(u"2.com.example"_s), std::optional(u"(null)"_s)}) {
        SCOPED_TRACE(identifier.value_or(u"none"_s).toStdString());
        EXPECT_EQ(parentName(list, identifier), u"none"_s);
    }
}

TEST(BackgroundTaskList, aRecordIsProtectedByItselfOrByItsApplication) {
    const BackgroundTaskItem app = dumpedRecord(u"Traktor Pro 4"_s, u"app (0x2)"_s, u"2.com.x.tp4"_s);
    const BackgroundTaskItem helper = dumpedRecord(u"Updater"_s, u"agent"_s, u"8.com.x.updater"_s, u"2.com.x.tp4"_s);
    const BackgroundTaskItem own = dumpedRecord(u"Serato Agent"_s, u"agent"_s, u"8.com.y"_s);
    const BackgroundTaskItem other = dumpedRecord(u"Dropbox"_s, u"agent"_s, u"8.com.z"_s, u"2.com.z.app"_s);
    const BackgroundTaskList list({app, helper, own, other});
    EXPECT_TRUE(list.isProtected(app));
    EXPECT_TRUE(list.isProtected(helper));
    EXPECT_TRUE(list.isProtected(own));
    EXPECT_FALSE(list.isProtected(other));
}

TEST(BackgroundTaskList, anEmptyListKnowsNothing) {
    const BackgroundTaskList list({});
    EXPECT_TRUE(list.isEmpty());
    EXPECT_EQ(parentName(list, u"2.com.a"_s), u"none"_s);
    EXPECT_FALSE(BackgroundTaskList({BackgroundTaskItem()}).isEmpty());
}

TEST(BackgroundTaskList, aFileIsWhereItsRecordOrItsParentTells) {
    BackgroundTaskItem app = dumpedRecord(u"app"_s, u"app"_s, u"2.com.app"_s);
    app.url = u"file:///Applications/My%20App.app/"_s;
    BackgroundTaskItem plain = dumpedRecord(u"plain"_s, u"app"_s, u"2.com.plain"_s);
    plain.url = u"/Applications/Plain.app/"_s;
    BackgroundTaskItem inside = dumpedRecord(u"inside"_s, u"login item"_s, u"4.com.in"_s, u"2.com.app"_s);
    inside.url = u"Contents/Library/LoginItems/In.app"_s;
    BackgroundTaskItem orphan = dumpedRecord(u"orphan"_s, u"login item"_s, u"4.com.or"_s, u"2.com.gone"_s);
    orphan.url = inside.url;
    const BackgroundTaskItem untold = dumpedRecord(u"untold"_s, u"login item"_s, u"4.com.un"_s, u"2.com.app"_s);
    const BackgroundTaskList list({app, plain, inside, orphan, untold});
    EXPECT_EQ(list.pathOf(app), u"/Applications/My App.app"_s);
    EXPECT_EQ(list.pathOf(plain), u"/Applications/Plain.app"_s);
    EXPECT_EQ(list.pathOf(inside), u"/Applications/My App.app/Contents/Library/LoginItems/In.app"_s);
    EXPECT_EQ(list.pathOf(orphan), std::nullopt);
    EXPECT_EQ(list.pathOf(untold), std::nullopt);
}

} // namespace
} // namespace quorvane
