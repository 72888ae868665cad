#include "platform/macos/SymbolPlace.h"

#include <gtest/gtest.h>

namespace quorvane {

TEST(SymbolPlace, fillsTheSquareInTheSymbolsOwnProportions) {
    EXPECT_EQ(symbolPlace({10, 10}, 16), QRectF(0, 0, 16, 16));
    EXPECT_EQ(symbolPlace({20, 10}, 16), QRectF(0, 4, 16, 8));
    EXPECT_EQ(symbolPlace({5, 10}, 16), QRectF(4, 0, 8, 16));
}

} // namespace quorvane
