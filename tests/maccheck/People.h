#pragma once

#include <QString>

#include <gtest/gtest.h>

namespace quorvane {

/// Whether somebody has said that they are there and may be asked.
void setPeopleAsked(bool areAsked);
bool arePeopleAsked();

/// Tells the person what a check needs of them.
void ask(const QString& request);

/// A check that a person takes part in.
class CheckWithPerson : public ::testing::Test {
protected:
    void SetUp() override;
};

/// A check of what only a user has who is logged in at the screen.
class CheckAtScreen : public ::testing::Test {
protected:
    void SetUp() override;
};

/// True where this process belongs to the user at the screen: the system gives them the console. On a Mac whose screen shows the
/// login window, or somebody else's session, no window can be made.
bool isUserAtScreen();

} // namespace quorvane
