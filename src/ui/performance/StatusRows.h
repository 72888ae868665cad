#pragma once

#include "actions/PageTexts.h"
#include "ui/pieces/InformationRow.h"
#include "ui/pieces/RowButton.h"

class QPushButton;

namespace quorvane {

class SymbolView;
class TextLabel;

/// Which configuration this Mac is in.
class PerformanceSystemMatchStatusRow : public QWidget {
    Q_OBJECT

public:
    explicit PerformanceSystemMatchStatusRow(QWidget* parent = nullptr);

    void setStatus(const StatusRow& status);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    StatusRow m_status;
    SymbolView* m_symbol;
    TextLabel* m_text;
    TextLabel* m_detail;
};

/// What is to be known beside it, and what can be done about that.
class PerformanceStatusNoteRow : public QWidget {
    Q_OBJECT

public:
    explicit PerformanceStatusNoteRow(const QString& symbol, QWidget* parent = nullptr);

    void setNote(const StatusNote& note);

Q_SIGNALS:
    void pressed();

private:
    TextLabel* m_text;
    QPushButton* m_button;
};

/// The snapshot that there is.
class PerformanceSnapshotStatusRow : public InformationRow {
    Q_OBJECT

public:
    using InformationRow::InformationRow;

    void setText(const RowText& text);
};

/// A row that leads somewhere or begins something.
class PerformanceNavigationRow : public RowButton {
    Q_OBJECT

public:
    PerformanceNavigationRow(const RowText& text, BadgeColor tint, RowEnd end = RowEnd::Nothing,
                             QWidget* parent = nullptr)
        : RowButton({text.symbol, tint, text.title, text.subtitle, end, {}, false, false, 0}, parent) {}
};

/// Leads to the making of a profile.
class CustomProfileHeroCard : public PerformanceNavigationRow {
    Q_OBJECT

public:
    explicit CustomProfileHeroCard(QWidget* parent = nullptr)
        : PerformanceNavigationRow(heroRow(), BadgeColor::Purple, RowEnd::Chevron, parent) {
        setToolTip(kHeroHint);
        setWhatsThis(kHeroHint);
    }
};

/// Has the live system compared with what is saved.
class PerformanceVerifySystemRow : public PerformanceNavigationRow {
    Q_OBJECT

public:
    explicit PerformanceVerifySystemRow(QWidget* parent = nullptr)
        : PerformanceNavigationRow(verifySystemRow(), BadgeColor::Blue, RowEnd::Nothing, parent) {}
};

} // namespace quorvane
