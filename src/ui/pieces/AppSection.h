#pragma once

#include <QWidget>

class QVBoxLayout;

namespace quorvane {

class AppCard;
class TextLabel;

/// A title over a card, with a header line above and a footer below the card.
class AppSection : public QWidget {
    Q_OBJECT

public:
    explicit AppSection(const QString& title, QWidget* parent = nullptr);

    AppCard& card() { return *m_card; }
    void setHeader(const QString& header);
    void setFooter(const QString& footer);

private:
    TextLabel* m_title;
    TextLabel* m_header;
    AppCard* m_card;
    TextLabel* m_footer;
};

/// A section of the performance page.
class PerformanceGroupedSection : public AppSection {
    Q_OBJECT

public:
    using AppSection::AppSection;
};

} // namespace quorvane
