#include "platform/macos/PropertyListTree.h"

#include <QDateTime>

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <vector>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Kind = PropertyListPart::Kind;

/// The system's values, which these stand for.
class Values {
public:
    const void* value(const QVariant& value) { return keep({Kind::Value, value, {}, {}}); }
    const void* array(const QList<const void*>& parts) { return keep({Kind::Array, {}, {}, parts}); }
    const void* dictionary(const QStringList& keys, const QList<const void*>& parts) {
        return keep({Kind::Dictionary, {}, keys, parts});
    }
    const void* foreign() { return keep({}); }

    std::optional<QVariantMap> read(const void* root, ForeignValues foreign = ForeignValues::Refused) {
        return propertyListDictionary(
            root, [](const void* value) { return *static_cast<const PropertyListPart*>(value); }, foreign);
    }
    /// Arrays in each other below a dictionary.
    std::optional<QVariantMap> readNested(int levels) {
        const void* inner = value(1);
        for (int level = 1; level < levels; ++level) {
            inner = array({inner});
        }
        return read(dictionary({u"a"_s}, {inner}));
    }

private:
    const void* keep(PropertyListPart part) {
        m_parts.push_back(std::make_unique<PropertyListPart>(std::move(part)));
        return m_parts.back().get();
    }

    std::vector<std::unique_ptr<PropertyListPart>> m_parts;
};

} // namespace

TEST(PropertyListTree, keepsValuesTheirOrderAndTheirPlaces) {
    Values values;
    const void* list = values.array({values.value(u"x"_s), values.array({}), values.value(true)});
    const void* inner = values.dictionary({u"list"_s, u"empty"_s}, {list, values.dictionary({}, {})});
    const QVariantMap expected{{u"number"_s, 5},
                               {u"inner"_s, QVariantMap{{u"list"_s, QVariantList{u"x"_s, QVariantList(), true}},
                                                        {u"empty"_s, QVariantMap()}}}};
    EXPECT_EQ(values.read(values.dictionary({u"number"_s, u"inner"_s}, {values.value(5), inner})), expected);
    EXPECT_EQ(values.read(values.dictionary({}, {})), QVariantMap());
}

TEST(PropertyListTree, whatBeginsWithSomethingElseThanADictionaryIsNone) {
    Values values;
    EXPECT_EQ(values.read(values.array({})), std::nullopt);
    EXPECT_EQ(values.read(values.value(u"x"_s)), std::nullopt);
    EXPECT_EQ(values.read(values.foreign(), ForeignValues::LeftOut), std::nullopt);
}

TEST(PropertyListTree, aForeignValueIsRefusedOrLeftOut) {
    Values values;
    const void* list = values.array({values.foreign(), values.value(1), values.foreign(), values.value(2)});
    const void* root = values.dictionary({u"a"_s, u"b"_s, u"c"_s}, {values.foreign(), list, values.value(3)});
    EXPECT_EQ(values.read(root), std::nullopt);
    const QVariantMap without{{u"b"_s, QVariantList{1, 2}}, {u"c"_s, 3}};
    EXPECT_EQ(values.read(root, ForeignValues::LeftOut), without);
}

TEST(PropertyListTree, fiveHundredAndTwelveLevelsAreReadAndNoMore) {
    Values values;
    EXPECT_TRUE(values.readNested(512));
    EXPECT_EQ(values.readNested(513), std::nullopt);
    EXPECT_EQ(values.readNested(100'000), std::nullopt);
}

TEST(PropertyListTree, partsThatAreNamedOverAndOverEndInNone) {
    Values values;
    const void* doubled = values.value(1);
    for (int level = 0; level < 60; ++level) {
        doubled = values.array({doubled, doubled});
    }
    EXPECT_EQ(values.read(values.dictionary({u"a"_s}, {doubled})), std::nullopt);
}

TEST(PropertyListTree, largeValuesThatAreNamedOverAndOverEndInNone) {
    Values values;
    const void* text = values.value(QString(8 << 20, u'x'));
    const void* data = values.value(QByteArray(16 << 20, 'x'));
    for (const void* large : {text, data}) {
        EXPECT_TRUE(values.read(values.dictionary({u"a"_s}, {values.array(QList<const void*>(6, large))})));
        EXPECT_EQ(values.read(values.dictionary({u"a"_s}, {values.array(QList<const void*>(9, large))})), std::nullopt);
    }
}

TEST(PropertyListDate, countsFromTheYear2001) {
    EXPECT_EQ(propertyListDate(0), QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC));
    EXPECT_EQ(propertyListDate(86400.25), QDateTime(QDate(2001, 1, 2), QTime(0, 0, 0, 250), Qt::UTC));
    EXPECT_EQ(propertyListDate(-1), QDateTime(QDate(2000, 12, 31), QTime(23, 59, 59), Qt::UTC));
}

TEST(PropertyListDate, whatIsNoMomentIsNone) {
    for (const double seconds : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                                 -std::numeric_limits<double>::infinity(), 1e300, -1e13}) {
        EXPECT_EQ(propertyListDate(seconds), std::nullopt) << seconds;
    }
}

} // namespace quorvane
