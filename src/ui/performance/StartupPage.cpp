#include "ui/performance/StartupPage.h"

#include "actions/PageTexts.h"
#include "ui/performance/PerformancePageHeader.h"
#include "ui/startup/StartupItemsEditor.h"

#include <QVBoxLayout>

namespace quorvane {

StartupPage::StartupPage(const ViewEnvironment& environment, QWidget* parent)
    : QWidget(parent) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* const header = new PerformancePageHeader(startupOptimizationRow());
    auto* const editor = new StartupItemsEditor(environment, {});
    layout->addWidget(header);
    layout->addWidget(editor, 1);
    setFocusProxy(header);
    connect(header, &PerformancePageHeader::backRequested, this, &StartupPage::backRequested);
    connect(editor, &StartupItemsEditor::backRequested, this, &StartupPage::backRequested);
}

} // namespace quorvane
