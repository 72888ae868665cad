#include "platform/macos/MacBackgroundTaskPermissions.h"

#include "platform/macos/CfRef.h"

#include <QFile>

#include <dlfcn.h>

namespace quorvane {

namespace {

/// What the entry points are taken to be: Boolean (CFURLRef application, CFStringRef label, Boolean isAllowed). No header
/// declares them. Whoever calls one keeps in mind that the program may end in it.
using EntryPoint = Boolean (*)(CFURLRef, CFStringRef, Boolean);

bool call(EntryPoint set, const QString& application, const QString& label, bool isAllowed) {
    const CfRef<CFStringRef> path(application.toCFString());
    const CfRef<CFStringRef> name(label.toCFString());
    const CfRef<CFURLRef> url(
        path ? CFURLCreateWithFileSystemPath(kCFAllocatorDefault, path.get(), kCFURLPOSIXPathStyle, true) : nullptr);
    return url && name && set(url.get(), name.get(), isAllowed);
}

} // namespace

bool MacBackgroundTaskPermissions::openLibrary(const QString& path) {
    m_library = dlopen(QFile::encodeName(path).constData(), RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE);
    return m_library != nullptr;
}

BackgroundTaskPermissions::SetUserAllowed MacBackgroundTaskPermissions::entryPoint(const QString& symbol) {
    if (!m_library) {
        return {};
    }
    const QByteArray name = symbol.toLatin1();
    const auto set = reinterpret_cast<EntryPoint>(dlsym(m_library, name)); // macapi: allow dlsym -- may be missing
    if (!set) {
        return {};
    }
    return [set](const QString& application, const QString& label, bool isAllowed) {
        return call(set, application, label, isAllowed);
    };
}

} // namespace quorvane
