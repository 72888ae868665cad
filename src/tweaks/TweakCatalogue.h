#pragma once

#include "tweaks/PerformanceSettings.h"

#include <QList>
#include <QString>

namespace quorvane {

/// A tweak as it is shown.
struct Tweak {
    QString key;  ///< the key in a file and in `customIcons`
    QString icon; ///< symbol name of the system's symbol font, where the user chose none
    QString title;
    bool PerformanceSettings::*isSelected;
    QString name; ///< what the log and a verification call it
};

/// One line under a tweak's title.
struct TweakDescription {
    QString key;
    QString text;
};

struct TweakSection {
    QString title;
    QList<TweakDescription> tweaks;
};

/// The twelve tweaks, in the order in which previews and reviews list them.
const QList<Tweak>& tweakCatalogue();

/// The sections of the main page and of the wizard; each tweak stands in one.
const QList<TweakSection>& tweakSections();

/// The one that a setting selects.
const Tweak& tweakOf(bool PerformanceSettings::*isSelected);

/// nullptr for a key that isn't in the catalogue.
const Tweak* findTweak(const QString& key);

/// The icon to show for a tweak: the user's choice, or else the catalogue's.
QString tweakIcon(const PerformanceSettings& settings, const Tweak& tweak);

} // namespace quorvane
