#include "core/FoldedText.h"

namespace quorvane {

QString foldedText(const QString& text) {
    return text.normalized(QString::NormalizationForm_C).toCaseFolded();
}

} // namespace quorvane
