#include "lock/PasswordLength.h"

#include <QTextBoundaryFinder>

namespace quorvane {

qsizetype passwordLength(const QString& password) {
    QTextBoundaryFinder boundaries(QTextBoundaryFinder::Grapheme, password);
    qsizetype count = 0;
    while (boundaries.toNextBoundary() >= 0) {
        ++count;
    }
    return count;
}

} // namespace quorvane
