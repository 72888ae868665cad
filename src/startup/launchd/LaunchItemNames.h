#pragma once

#include <QString>

#include <optional>

namespace quorvane {

class Bundles;
class PropertyLists;

// Names for launch plists, which name themselves in reverse domain notation if at all.

/// The name to show for a launch plist: that of the application it starts or belongs to, else its label in words, else
/// its file name in words.
QString launchItemDisplayName(const QString& plistPath, const QString& fileName, const PropertyLists& propertyLists,
                              const Bundles& bundles);

/// The label by which launchd knows the job of a plist. Empty where the plist tells none, or one that can't be named to
/// launchctl: in "gui/501/a/b" the label isn't "a/b".
QString launchJobLabel(const QString& plistPath, const PropertyLists& propertyLists);

/// True for a label that can stand in a launchd target. Profiles come from other people: an empty label would take the
/// user's session down.
bool isUsableLaunchdLabel(const QString& label);
/// True for a label of the program's own.
bool isOwnLabel(const QString& label);
/// True for labels of the system's and of the program's own.
bool isReservedLabel(const QString& label);

/// The application bundle that holds a path: the shortest one directly named under /Applications, else the outermost;
/// none where no folder on the way up is an application.
std::optional<QString> enclosingApplication(const QString& path);

/// The name that a bundle shows, else that of its folder; none where there is no bundle.
std::optional<QString> friendlyBundleName(const QString& bundlePath, const Bundles& bundles);

/// "com.example.MyHelperTool" as "Example My Helper Tool".
QString humanizedLabel(const QString& label);

/// "MyHelperTool" as "My Helper Tool"; a run of upper-case letters stays one word: "DJ" as "Dj".
QString splitCamelCaseWords(const QString& text);

} // namespace quorvane
