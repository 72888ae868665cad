#include "maccheck/People.h"

#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane {

namespace {

bool& peopleAsked() {
    static bool areAsked = false;
    return areAsked;
}

} // namespace

void setPeopleAsked(bool areAsked) {
    peopleAsked() = areAsked;
}

bool arePeopleAsked() {
    return peopleAsked();
}

void ask(const QString& request) {
    std::fputs(("ASK  " + request.toUtf8() + '\n').constData(), stdout);
    std::fflush(stdout);
}

void CheckWithPerson::SetUp() {
    if (!arePeopleAsked()) {
        GTEST_SKIP() << "needs a person: --ask";
    }
}

void CheckAtScreen::SetUp() {
    if (!isUserAtScreen()) {
        GTEST_SKIP() << "nobody is logged in at the screen";
    }
}

bool isUserAtScreen() {
    struct stat console {};
    return ::stat("/dev/console", &console) == 0 && console.st_uid == ::getuid();
}

} // namespace quorvane
