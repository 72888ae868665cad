// A program of checks whose ends are known, for the test of what such a program prints.

#include "maccheck/CheckProgram.h"
#include "maccheck/People.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <stdexcept>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

class PlantedWithPerson : public CheckWithPerson {};

} // namespace

TEST(Planted, passes) {}

TEST(Planted, passesAndTells) {
    tell(u"3 ms\neach"_s);
}

TEST(Planted, fails) {
    tell(u"all the same"_s);
    EXPECT_TRUE(false) << "one\nreason";
    ADD_FAILURE() << "and another";
}

TEST(Planted, isSkipped) {
    GTEST_SKIP() << "nobody is there";
}

TEST(Planted, throws) {
    throw std::runtime_error("thrown");
}

TEST_F(PlantedWithPerson, isAskedFor) {
    ask(u"Nod."_s);
}

} // namespace quorvane

int main(int argumentCount, char** arguments) {
    const QCoreApplication application(argumentCount, arguments);
    return quorvane::runChecks(QCoreApplication::arguments().mid(1));
}
