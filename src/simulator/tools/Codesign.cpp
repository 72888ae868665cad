#include "simulator/tools/Codesign.h"

#include "simulator/MacPaths.h"
#include "simulator/tools/ToolOptions.h"

#include <algorithm>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* kSigningSubject = "codeSigning";

bool isListed(const Json& state, const char* key, const QString& path) {
    const Json paths = state.is_object() ? state.value(key, Json::array()) : Json::array();
    return std::find(paths.begin(), paths.end(), path.toStdString()) != paths.end();
}

/// What stands against the code at a path; empty where its seal holds.
QString findingOn(const ToolContext& context, const QString& typed) {
    const QString path = context.absolutePath(withoutFinalSlashes(typed));
    if (!context.volume.exists(path)) {
        return u"No such file or directory"_s;
    }
    const Json state = context.mac.state().read(kSigningSubject);
    const QString canonical = context.volume.canonicalPath(path);
    if (isListed(state, "unsigned", canonical)) {
        return u"code object is not signed at all"_s;
    }
    return isListed(state, "broken", canonical) ? u"a sealed resource is missing or invalid"_s : QString();
}

} // namespace

int runCodesign(ToolContext& context) {
    const QStringList paths = context.arguments.mid(2);
    const bool hasOptions =
        std::any_of(paths.begin(), paths.end(), [](const QString& path) { return path.startsWith(u'-'); });
    if (context.arguments.value(1) != u"--verify"_s || paths.isEmpty() || hasOptions) {
        return notSimulated(context, context.arguments.mid(1).join(u' '));
    }
    int status = 0;
    for (const QString& path : paths) {
        if (const QString finding = findingOn(context, path); !finding.isEmpty()) {
            context.complain(path + u": "_s + finding + u'\n');
            status = 1;
        }
    }
    return status;
}

} // namespace macsim
