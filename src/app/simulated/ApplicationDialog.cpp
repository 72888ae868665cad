#include "app/simulated/ApplicationDialog.h"

#include "core/OneLine.h"
#include "ui/pieces/AppButtons.h"
#include "ui/pieces/TextLabel.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QListWidget>
#include <QVBoxLayout>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kApplicationsSize(420, 440);
constexpr int kPathRole = Qt::UserRole;

} // namespace

ApplicationDialog::ApplicationDialog(const QString& title, const QStringList& paths)
    : m_list(new QListWidget) {
    setAccessibleName(title);
    resize(kApplicationsSize);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(Theme::kGap24, Theme::kGap24, Theme::kGap24, Theme::kGap16);
    column->setSpacing(Theme::kGap12);
    column->addWidget(new TextLabel(TextStyle::SectionTitle, TextTone::Normal, title));
    column->addWidget(m_list, 1);
    column->addWidget(makeButtons());
    m_list->setAccessibleName(u"Applications"_s);
    fill(paths);
    connect(m_list, &QListWidget::itemActivated, this, &ApplicationDialog::accept);
    connect(m_list, &QListWidget::currentRowChanged, this, [this](int row) { m_open->setEnabled(row >= 0); });
    m_open->setEnabled(false);
    m_list->setCurrentRow(0);
    m_list->setFocus();
}

void ApplicationDialog::fill(const QStringList& paths) {
    for (const QString& path : paths) {
        auto* const item = new QListWidgetItem(onOneLine(QFileInfo(path).completeBaseName()), m_list);
        item->setData(kPathRole, path);
        item->setToolTip(onOneLine(path).toHtmlEscaped());
    }
    m_list->sortItems();
}

QWidget* ApplicationDialog::makeButtons() {
    auto* const row = new QWidget;
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::kGap8);
    auto* const cancel = new AppSecondaryButton(u"Cancel"_s);
    m_open = new AppPrimaryButton(u"Open"_s);
    layout->addStretch(1);
    layout->addWidget(cancel);
    layout->addWidget(m_open);
    connect(cancel, &QPushButton::clicked, this, &ApplicationDialog::reject);
    connect(m_open, &QPushButton::clicked, this, &ApplicationDialog::accept);
    return row;
}

void ApplicationDialog::accept() {
    const QListWidgetItem* const item = m_list->currentItem();
    if (item != nullptr) {
        Q_EMIT chosen(item->data(kPathRole).toString());
        QDialog::accept();
    }
}

} // namespace quorvane
