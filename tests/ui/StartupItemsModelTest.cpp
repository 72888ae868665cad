// The list of the startup editor: rows come and go by what they stand for, and nothing is ever reset.

#include "ui/startup/StartupItemsModel.h"

#include "fakes/WindowActions.h"

#include <QAbstractItemModelTester>

#include <random>

namespace quorvane {

namespace {

class StartupItemsModelTest : public WindowActions {
protected:
    static StartupItem numbered(int number) {
        StartupItem item;
        item.name = u"Helper %1"_s.arg(number, 4, 10, QChar(u'0'));
        item.launchIdentifier = u"com.helper.%1.plist"_s.arg(number);
        item.id = launchItemId(*item.launchIdentifier);
        item.path = u"/Library/LaunchAgents/"_s + *item.launchIdentifier;
        item.kind = number % 3 == 0 ? StartupItemKind::launchDaemon : StartupItemKind::launchAgent;
        return item;
    }
    static QList<StartupItem> manyItems(int count) {
        QList<StartupItem> items;
        for (int number = 0; number < count; ++number) {
            items.append(numbered(number));
        }
        return items;
    }
    MasterProfileState& workingCopy() { return session->workingCopy; }
    static QStringList idsOf(const StartupItemsModel& model) {
        QStringList ids;
        for (int row = 0; row < model.rowCount(); ++row) {
            ids.append(model.index(row).data(StartupItemsModel::IdRole).toString());
        }
        return ids;
    }
};

/// Keeps in step with a model by what it tells alone.
class Follower : public QObject {
public:
    explicit Follower(const StartupItemsModel& model)
        : m_model(model) {
        take();
        connect(&model, &QAbstractItemModel::rowsRemoved, this,
                [this](const QModelIndex&, int first, int last) { ids.remove(first, last - first + 1); });
        connect(&model, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex&, int first, int last) {
            for (int row = first; row <= last; ++row) {
                ids.insert(row, m_model.index(row).data(StartupItemsModel::IdRole).toString());
            }
        });
        connect(&model, &QAbstractItemModel::modelReset, this, [this] { ++resets; });
        connect(&model, &QAbstractItemModel::dataChanged, this,
                [this](const QModelIndex& first, const QModelIndex& last) { told += last.row() - first.row() + 1; });
    }

    QStringList ids;
    int resets = 0;
    int told = 0; ///< how many rows were said to have changed

private:
    void take() {
        for (int row = 0; row < m_model.rowCount(); ++row) {
            ids.append(m_model.index(row).data(StartupItemsModel::IdRole).toString());
        }
    }
    const StartupItemsModel& m_model;
};

} // namespace

TEST_F(StartupItemsModelTest, oneSwitchTellsOfOneRow) {
    workingCopy().mergeDiscoveredStartup({manyItems(200)});
    const StartupItemsModel model(session->startupEditing, workingCopy());
    const Follower follower(model);
    workingCopy().setRunsAtStartup(numbered(7).id, false);
    EXPECT_EQ(follower.told, 1);
    EXPECT_EQ(model.indexOf(numbered(7).id).data(Qt::CheckStateRole), Qt::Unchecked);
    EXPECT_EQ(model.runningCount(), 199);
}

TEST_F(StartupItemsModelTest, whoHoldsOnToARowKeepsItThroughAnySearch) {
    workingCopy().mergeDiscoveredStartup({manyItems(500)});
    StartupItemsModel model(session->startupEditing, workingCopy());
    const QAbstractItemModelTester tester(&model);
    const Follower follower(model);
    const QPersistentModelIndex held = model.indexOf(numbered(42).id);
    for (const QString& text : {u"42"_s, u"4"_s, u"HELPER"_s, u"daemon"_s, u""_s}) {
        model.setSearch(text);
        ASSERT_TRUE(held.isValid()) << text.toStdString();
        EXPECT_EQ(held.data(StartupItemsModel::IdRole).toString(), numbered(42).id);
        EXPECT_EQ(follower.ids, idsOf(model)) << text.toStdString();
    }
    model.setSearch(u"0007"_s);
    EXPECT_FALSE(held.isValid());
    EXPECT_EQ(follower.resets, 0);
}

TEST_F(StartupItemsModelTest, composedAndDecomposedNamesAreFoundAlike) {
    StartupItem item = numbered(1);
    item.name = u"Cafe\u0301 Noir"_s;
    workingCopy().mergeDiscoveredStartup({{item}});
    StartupItemsModel model(session->startupEditing, workingCopy());
    for (const QString& text : {u"caf\u00e9"_s, u"CAFE\u0301"_s}) {
        model.setSearch(text);
        EXPECT_TRUE(model.indexOf(item.id).isValid()) << text.toStdString();
    }
}

TEST_F(StartupItemsModelTest, thePathTellsItemsApartThatLookAlike) {
    StartupItem one = numbered(1);
    StartupItem other = numbered(4);
    other.name = one.name;
    workingCopy().mergeDiscoveredStartup({{one, other, numbered(2)}});
    const StartupItemsModel model(session->startupEditing, workingCopy());
    const auto description = [&model](const StartupItem& item) {
        return model.row(model.indexOf(item.id)).description;
    };
    EXPECT_EQ(description(one), u"Launch Agent · "_s + one.path);
    EXPECT_EQ(description(other), u"Launch Agent · "_s + other.path);
    EXPECT_EQ(description(numbered(2)), u"Launch Agent"_s);
}

/// Whatever comes and goes, in whatever order.
TEST_F(StartupItemsModelTest, itsRowsAreAlwaysThoseThatItTells) {
    std::mt19937 random(7);
    const auto below = [&random](int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); };
    const QList<StartupItem> population = manyItems(90);
    StartupItemsModel model(session->startupEditing, workingCopy());
    const QAbstractItemModelTester tester(&model);
    const Follower follower(model);
    const QStringList searches{u""_s, u"1"_s, u"daemon"_s, u"nothing"_s, u"helper 00"_s};
    for (int step = 0; step < 200; ++step) {
        QList<StartupItem> found = population;
        switch (below(4)) {
        case 0: {
            const int sieve = 1 + below(9);
            found.removeIf([&](const StartupItem&) { return below(sieve) == 0; });
            workingCopy().mergeDiscoveredStartup({found});
            break;
        }
        case 1:
            workingCopy().setRunsAtStartup(population.at(below(90)).id, below(2) == 0);
            break;
        case 2:
            model.setSearch(searches.at(below(5)));
            break;
        default:
            workingCopy().setCloudSyncDisabled(CloudSyncService::dropbox, below(2) == 0);
        }
        ASSERT_EQ(follower.ids, idsOf(model)) << "step " << step;
    }
    EXPECT_EQ(follower.resets, 0);
}

} // namespace quorvane
