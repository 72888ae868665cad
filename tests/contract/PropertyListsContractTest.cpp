// What every system reads of property lists.

#include "contract/PropertyListsContract.h"

#include <QDateTime>

#include <array>
#include <thread>

namespace quorvane {

namespace {

// As a person writes one by hand: a remark in front, tabs, blank lines, an option commented out.
constexpr const char* kAgent = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<!--
	Copy this file to ~/Library/LaunchAgents.
-->
<plist version="1.0">
	<dict>
		<key>Label</key>
		<string>com.example.sync.agent</string>

		<key>ProgramArguments</key>
		<array>
			<string>/Applications/Sync.app/Contents/MacOS/Agent</string>
			<!-- <string>--verbose</string> -->
			<string>--quiet</string>
		</array>
		<key>RunAtLoad</key><true/>
		<key>KeepAlive</key>
		<dict><key>SuccessfulExit</key><false/></dict>
		<key>StartInterval</key><integer>3600</integer>
		<key>Nice</key><integer>-5</integer>
		<key>Ratio</key><real>0.5</real>
		<key>Since</key><date>2026-01-31T10:00:00Z</date>
		<key>Token</key><data>AP8=</data>
	</dict>
</plist>
)";

// The same, written by another program as a binary list.
constexpr const char* kBinaryAgent =
    "YnBsaXN0MDDZAQIDBAUGBwgJCg0ODxITFBUWWUtlZXBBbGl2ZVVMYWJlbFROaWNlXxAQUHJvZ3JhbUFyZ3VtZW50c1VSYXRpb1lS"
    "dW5BdExvYWRVU2luY2VdU3RhcnRJbnRlcnZhbFVUb2tlbtELDF5TdWNjZXNzZnVsRXhpdAhfEBZjb20uZXhhbXBsZS5zeW5jLmFn"
    "ZW50E//////////7ohARXxArL0FwcGxpY2F0aW9ucy9TeW5jLmFwcC9Db250ZW50cy9NYWNPUy9BZ2VudFctLXF1aWV0Iz/gAAAA"
    "AAAACTNBx5cFEAAAABEOEEIA/wgbJSswQ0lTWWdtcH+AmaKl09vk5e7xAAAAAAAAAQEAAAAAAAAAFwAAAAAAAAAAAAAAAAAAAPQ=";

QVariantMap agent() {
    return {{u"Label"_s, u"com.example.sync.agent"_s},
            {u"ProgramArguments"_s, QVariantList{u"/Applications/Sync.app/Contents/MacOS/Agent"_s, u"--quiet"_s}},
            {u"RunAtLoad"_s, true},
            {u"KeepAlive"_s, QVariantMap{{u"SuccessfulExit"_s, false}}},
            {u"StartInterval"_s, qint64{3600}},
            {u"Nice"_s, qint64{-5}},
            {u"Ratio"_s, 0.5},
            {u"Since"_s, QDateTime(QDate(2026, 1, 31), QTime(10, 0), Qt::UTC)},
            {u"Token"_s, QByteArray("\0\xff", 2)}};
}

// ["x"], binary.
constexpr const char* kBinaryArray = "YnBsaXN0MDChAVF4CAoAAAAAAAABAQAAAAAAAAACAAAAAAAAAAAAAAAAAAAADA==";

} // namespace

TEST_P(PropertyListsContract, xmlIsReadWithItsTypes) {
    const std::optional<QVariantMap> read = dictionaryOf(kAgent);
    EXPECT_EQ(read, agent());
    ASSERT_TRUE(read);
    EXPECT_EQ(read->value(u"RunAtLoad"_s).typeId(), QMetaType::Bool);
    EXPECT_EQ(read->value(u"StartInterval"_s).typeId(), QMetaType::LongLong);
    EXPECT_EQ(read->value(u"Label"_s).typeId(), QMetaType::QString);
    EXPECT_EQ(read->value(u"ProgramArguments"_s).typeId(), QMetaType::QVariantList);
    EXPECT_EQ(read->value(u"KeepAlive"_s).typeId(), QMetaType::QVariantMap);
}

TEST_P(PropertyListsContract, aBinaryListIsReadLikeItsXml) {
    EXPECT_EQ(dictionaryOf(QByteArray::fromBase64(kBinaryAgent)), agent());
}

TEST_P(PropertyListsContract, anEmptyDictionaryIsADictionary) {
    EXPECT_EQ(dictionaryOf("<plist version=\"1.0\"><dict/></plist>"), QVariantMap());
}

TEST_P(PropertyListsContract, everyDamagedListIsNone) {
    const QByteArray xml(kAgent);
    const QByteArray binary = QByteArray::fromBase64(kBinaryAgent);
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray("\n"), QByteArray("Label = x"), QByteArray("{\"Label\": 1}"),
          QByteArray("\xff\xfe\x00", 3), xml.left(xml.size() / 2), xml.mid(300), binary.left(binary.size() - 1),
          binary.left(40), QByteArray("bplist00")}) {
        EXPECT_EQ(dictionaryOf(bytes), std::nullopt) << bytes.left(60).toStdString();
    }
}

TEST_P(PropertyListsContract, aBinaryListWithAnyByteTurnedIsReadOrNone) {
    const QByteArray binary = QByteArray::fromBase64(kBinaryAgent);
    int undamaged = 0;
    for (qsizetype at = 0; at < binary.size(); ++at) {
        QByteArray turned = binary;
        turned[at] = static_cast<char>(~turned[at]);
        const std::optional<QVariantMap> read = dictionaryOf(turned);
        undamaged += read == agent() ? 1 : 0;
    }
    EXPECT_LT(undamaged, 16); // only the unused bytes of the trailer and the version say nothing
}

TEST_P(PropertyListsContract, aLargeDictionaryIsReadWhole) {
    constexpr int kKeys = 20'000;
    QByteArray xml = "<plist><dict>";
    for (int key = 0; key < kKeys; ++key) {
        xml += "<key>" + QByteArray::number(key) + "</key><integer>" + QByteArray::number(key) + "</integer>";
    }
    const std::optional<QVariantMap> read = dictionaryOf(xml + "</dict></plist>");
    ASSERT_TRUE(read);
    EXPECT_EQ(read->size(), kKeys);
    EXPECT_EQ(read->value(u"19999"_s), QVariant(qint64{19999}));
}

TEST_P(PropertyListsContract, aListThatIsNoDictionaryIsNone) {
    for (const char* root : {"<array><dict/></array>", "<string>x</string>", "<true/>", "<integer>1</integer>"}) {
        EXPECT_EQ(dictionaryOf(QByteArray("<plist version=\"1.0\">") + root + "</plist>"), std::nullopt) << root;
    }
    EXPECT_EQ(dictionaryOf(QByteArray::fromBase64(kBinaryArray)), std::nullopt);
}

TEST_P(PropertyListsContract, whatCannotBeReadIsNone) {
    subject->link(path(u"circle.plist"_s), u"circle.plist"_s);
    for (const QString& file : {path(u"gone.plist"_s), subject->folder(), path(u"circle.plist"_s), u"relative.plist"_s,
                                QString(), path(u"a\0b"_s)}) {
        EXPECT_EQ(lists.dictionary(file), std::nullopt) << file.toStdString();
    }
}

TEST_P(PropertyListsContract, aLinkIsFollowed) {
    dictionaryOf(kAgent);
    subject->link(path(u"link.plist"_s), agentPath);
    EXPECT_EQ(lists.dictionary(path(u"link.plist"_s)), agent());
}

TEST_P(PropertyListsContract, aListThatIsNestedTooDeeplyIsNone) {
    expectNestedIsNone(1000);
}

TEST_P(PropertyListsContract, aHugeFileIsNone) {
    subject->writeLarge(path(u"huge.plist"_s), kAgent, qint64{64} * 1024 * 1024 + 1);
    EXPECT_EQ(lists.dictionary(path(u"huge.plist"_s)), std::nullopt);
}

TEST_P(PropertyListsContract, severalThreadsReadAtOnce) {
    constexpr int kRounds = 100;
    const QString binary = path(u"binary.plist"_s);
    subject->write(binary, QByteArray::fromBase64(kBinaryAgent));
    dictionaryOf(kAgent);
    std::array<int, 4> right{};
    std::array<std::thread, 4> threads;
    for (std::size_t index = 0; index < threads.size(); ++index) {
        threads[index] = std::thread([this, &right, &binary, index] {
            for (int round = 0; round < kRounds; ++round) {
                right[index] += lists.dictionary(round % 2 == 0 ? agentPath : binary) == agent() ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const int count : right) {
        EXPECT_EQ(count, kRounds);
    }
}

} // namespace quorvane
