#include "lock/StoredAppPassword.h"

#include <gtest/gtest.h>

#include <numeric>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// The bytes 0 to 31.
QByteArray countingSalt() {
    QByteArray salt(kSaltLength, '\0');
    std::iota(salt.begin(), salt.end(), '\0');
    return salt;
}

const QString kSaltText = u"AAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8="_s;
// From sha256sum, over a file of the password and the bytes 0 to 31.
const QString kHashOfGig7 = u"e96433eec4f0531770258a29b57587e8eb07ca397bb1264099bb09c81708aa7c"_s;
const QString kHashOfStage = u"0fd424f81fb43f10ad20bcd2d6e55fa41bb4ed7621f255d7d72eec43edeaf240"_s;
const StoredAppPassword kGig7{kSaltText, kHashOfGig7};

} // namespace

TEST(StoredAppPassword, digestsThePasswordsBytesAndRightBehindThemTheSalt) {
    const QByteArray input = appPasswordDigestInput(u"gig7"_s, countingSalt());
    EXPECT_EQ(input.size(), 36);
    EXPECT_EQ(input.left(4), "gig7");
    EXPECT_EQ(input.mid(4), countingSalt());
    EXPECT_EQ(appPasswordDigestInput(u"é🎛"_s, "salt"), "\xc3\xa9\xf0\x9f\x8e\x9bsalt");
}

TEST(StoredAppPassword, holdsTheSaltInBase64AndTheDigestInHexadecimal) {
    EXPECT_EQ(storedAppPassword(u"gig7"_s, countingSalt()), kGig7);
    EXPECT_EQ(storedAppPassword(u"Bühne 🎛"_s, countingSalt()), (StoredAppPassword{kSaltText, kHashOfStage}));
}

TEST(StoredAppPassword, knowsItsPasswordFromEveryOther) {
    EXPECT_TRUE(isRightPassword(kGig7, u"gig7"_s));
    for (const QString& other : {u"Gig7"_s, u"gig7 "_s, u"gig"_s, u"gig77"_s, u""_s, u"gig7\0"_s}) {
        EXPECT_FALSE(isRightPassword(kGig7, other)) << other.toStdString();
    }
}

TEST(StoredAppPassword, takesCharactersAsTheyWereTyped) {
    const StoredAppPassword composed = storedAppPassword(u"caf\u00e9"_s, countingSalt());
    EXPECT_TRUE(isRightPassword(composed, u"caf\u00e9"_s));
    EXPECT_FALSE(isRightPassword(composed, u"cafe\u0301"_s));
}

TEST(StoredAppPassword, standsInTheKeychainUnderTwoKeys) {
    const QByteArray text = R"({"salt":"AAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8=",)"
                            R"("hash":"e96433eec4f0531770258a29b57587e8eb07ca397bb1264099bb09c81708aa7c"})";
    EXPECT_EQ(encodeStoredAppPassword(kGig7), text);
    EXPECT_EQ(decodeStoredAppPassword(text), kGig7);
}

TEST(StoredAppPassword, isReadInAnyOrderAndLayoutAndBesideOtherKeys) {
    const QByteArray text = "{ \"version\": 2,\n  \"hash\": \"h\",\n  \"salt\": \"AA\\u003d\\/\" }\n";
    EXPECT_EQ(decodeStoredAppPassword(text), (StoredAppPassword{u"AA=/"_s, u"h"_s}));
}

TEST(StoredAppPassword, thatIsDamagedIsNone) {
    const QByteArray whole = encodeStoredAppPassword(kGig7);
    for (qsizetype length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(decodeStoredAppPassword(whole.left(length)), std::nullopt) << length;
    }
    for (const QByteArray& text :
         {QByteArray("[]"), QByteArray("null"), QByteArray("\"salt\""), QByteArray("{}"),
          QByteArray(R"({"salt":"AA=="})"), QByteArray(R"({"hash":"h"})"), QByteArray(R"({"salt":1,"hash":"h"})"),
          QByteArray(R"({"salt":"AA==","hash":null})"), QByteArray(R"({"salt":["AA=="],"hash":"h"})"),
          QByteArray(R"({"Salt":"AA==","Hash":"h"})"), whole + "x", whole + '\0',
          QByteArray("{\"salt\":\"\xff\",\"hash\":\"h\"}")}) {
        EXPECT_EQ(decodeStoredAppPassword(text), std::nullopt) << text.toStdString();
    }
}

TEST(StoredAppPassword, whoseSaltDoesNotDecodeHasNoRightPassword) {
    for (const QString& salt : {u"*"_s, u"AA"_s, u"AAE"_s, u"AA==="_s, u"A A=="_s, u"AA==\n"_s, u"é"_s, u"AA=A"_s,
                                kSaltText.chopped(1), kSaltText + u'!', u"\0AA=="_s}) {
        for (const QString& hash : {kHashOfGig7, u""_s}) {
            for (const QString& password : {u"gig7"_s, u""_s}) {
                EXPECT_FALSE(isRightPassword({salt, hash}, password)) << salt.toStdString();
            }
        }
    }
}

TEST(StoredAppPassword, whoseHashIsNoDigestInLowerCaseHasNoRightPassword) {
    for (const QString& hash :
         {kHashOfGig7.toUpper(), kHashOfGig7.chopped(1), kHashOfGig7 + u'0', u' ' + kHashOfGig7, u""_s, kHashOfStage}) {
        EXPECT_FALSE(isRightPassword({kSaltText, hash}, u"gig7"_s)) << hash.toStdString();
    }
}

TEST(StoredAppPassword, withASaltOfAnotherLengthIsComparedAllTheSame) {
    for (const QByteArray& salt : {QByteArray(), QByteArray("x"), QByteArray(100, 'y')}) {
        EXPECT_TRUE(isRightPassword(storedAppPassword(u"gig7"_s, salt), u"gig7"_s)) << salt.size();
        EXPECT_FALSE(isRightPassword(storedAppPassword(u"gig7"_s, salt), u"gig8"_s)) << salt.size();
    }
}

} // namespace quorvane
