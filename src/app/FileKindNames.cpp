#include "app/FileKindNames.h"

namespace quorvane {

using namespace Qt::StringLiterals;

QString fileFilterOf(FileKind kind) {
    switch (kind) {
    case FileKind::Profile:
        return u"Profiles (*.json)"_s;
    case FileKind::Application:
        return u"Applications (*.app)"_s;
    case FileKind::PlainText:
        break;
    }
    return u"Plain Text (*.txt)"_s;
}

QString fileSuffixOf(FileKind kind) {
    return kind == FileKind::Profile ? u"json"_s : u"txt"_s;
}

} // namespace quorvane
