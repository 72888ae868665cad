#pragma once

#include <QWidget>

class QLineEdit;
class QListView;
class QStringListModel;

namespace quorvane {

/// Lets the user choose among the popular icons.
class IconPicker : public QWidget {
    Q_OBJECT

public:
    explicit IconPicker(const QString& currentIcon, QWidget* parent = nullptr);

Q_SIGNALS:
    void iconSelected(const QString& icon);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void search(const QString& text);
    void select(const QModelIndex& index);

    QString m_currentIcon;
    QLineEdit* m_search;
    QListView* m_grid;
    QStringListModel* m_icons;
};

} // namespace quorvane
