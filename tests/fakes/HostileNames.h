#pragma once

#include "core/OneLine.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace quorvane {

/// Names that would be more than a name if they were let: markup, a second line, a turned direction, and no end.
inline QStringList hostileNames() {
    return {QStringLiteral("<h1>Live</h1>\n&gig"), QStringLiteral("Gig\u202Egig.exe\u2066\tnow"),
            QStringLiteral("Quorvane\u2029Restart now"), QString(500, u'x')};
}

/// The name stands in the text as a part of its one line.
inline void expectNameInside(const QString& text, const QString& name) {
    EXPECT_EQ(text, onOneLine(text)) << name.toStdString();
    EXPECT_TRUE(text.contains(nameOnOneLine(name))) << text.toStdString();
    EXPECT_LT(text.size(), 200) << name.toStdString();
}

} // namespace quorvane
