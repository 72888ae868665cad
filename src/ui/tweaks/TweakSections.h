#pragma once

#include <QHash>
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
    explicit TweakSections(MasterProfileState& workingCopy, QWidget* parent = nullptr);

private:
    QWidget* makeSection(const TweakSection& section);
    void takeSettings();

    MasterProfileState& m_workingCopy;
    QHash<QString, TweakToggle*> m_toggles; ///< by tweak key
};

} // namespace quorvane
