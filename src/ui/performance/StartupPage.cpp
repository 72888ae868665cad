#include "ui/performance/StartupPage.h"

#include "actions/PageTexts.h"
#include "ui/performance/PerformancePageHeader.h"
#include "ui/profiles/ProfileSelectorView.h"
#include "ui/startup/StartupItemsEditor.h"

#include <QVBoxLayout>

namespace quorvane {

StartupPage::StartupPage(const ViewEnvironment& environment, QWidget* parent)
    : QWidget(parent) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* const selector = new ProfileSelectorView(environment);
    auto* const header = new PerformancePageHeader(startupOptimizationRow(), selector);
    auto* const editor = new StartupItemsEditor(environment, {});
    layout->addWidget(header);
    layout->addWidget(editor, 1);
    setFocusProxy(header);
    connect(selector, &ProfileSelectorView::editorRequested, this, &StartupPage::editorRequested);
    connect(header, &PerformancePageHeader::backRequested, this, &StartupPage::backRequested);
    connect(editor, &StartupItemsEditor::backRequested, this, &StartupPage::backRequested);
}

} // namespace quorvane
