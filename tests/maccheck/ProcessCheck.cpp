// The process as the program prepares it, which this one has done, too.

#include "maccheck/CheckProgram.h"

#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include <sys/resource.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(Process, childrenLookForToolsInTheSystemsFoldersAlone) {
    EXPECT_EQ(QProcessEnvironment::systemEnvironment().value(u"PATH"_s), u"/usr/bin:/bin:/usr/sbin:/sbin"_s);
}

TEST(Process, hasRoomForAThousandOpenFiles) {
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_GE(limit.rlim_cur, rlim_t{1024});
}

} // namespace quorvane
