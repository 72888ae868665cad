#pragma once

#include "ui/pieces/AppSection.h"

#include <QHash>

class QAbstractButton;

namespace quorvane {

class AppearanceManager;

/// How the program looks.
class AppearanceSection : public AppSection {
    Q_OBJECT

public:
    explicit AppearanceSection(AppearanceManager& appearance, QWidget* parent = nullptr);

private:
    void takeMode();

    const AppearanceManager& m_appearance;
    QHash<QString, QAbstractButton*> m_choices; ///< by mode
};

} // namespace quorvane
