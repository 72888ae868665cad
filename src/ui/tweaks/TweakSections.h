#pragma once

#include <QHash>
#include <QString>
#include <QWidget>

namespace quorvane {

class MasterProfileState;
class TweakToggle;
struct TweakSection;

/// The twelve tweaks of the working copy in their groups.
class TweakSections : public QWidget {
    Q_OBJECT

public:
    /// @param workingCopy  outlives it
    /// @param systemVersion  of macOS, by which the tweaks have their notes
    TweakSections(MasterProfileState& workingCopy, const QString& systemVersion, QWidget* parent = nullptr);

private:
    QWidget* makeSection(const TweakSection& section);
    void takeSettings();

    MasterProfileState& m_workingCopy;
    QString m_systemVersion;
    QHash<QString, TweakToggle*> m_toggles; ///< by tweak key
};

} // namespace quorvane
