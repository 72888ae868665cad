#include "platform/simulated/PasswordAttempts.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;
using macsim::Authorization;

namespace {

struct TypedPasswords {
    QStringList typed;
    QList<std::optional<Authorization>> endings;
};

} // namespace

TEST(PasswordAttempts, aWrongPasswordIsAskedForAgainAndTheThirdIsARefusal) {
    const std::optional<Authorization> again;
    const TypedPasswords cases[] = {
        {{u"gîg 7"_s}, {Authorization::Allow}},
        {{u"gig 7"_s, u"gîg 7"_s}, {again, Authorization::Allow}},
        {{u""_s, u"GÎG 7"_s, u"gîg 7"_s}, {again, again, Authorization::Allow}},
        {{u"gîg 7 "_s, u" gîg 7"_s, u"gîg"_s}, {again, again, Authorization::Deny}},
    };
    for (const TypedPasswords& row : cases) {
        PasswordAttempts attempts(u"gîg 7"_s);
        QList<std::optional<Authorization>> endings;
        for (const QString& typed : row.typed) {
            endings.append(attempts.ending(typed));
        }
        EXPECT_EQ(endings, row.endings) << row.typed.join(u'|').toStdString();
    }
}

} // namespace quorvane
