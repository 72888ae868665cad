#include "app/NativeFilePanels.h"

#include "app/FileKindNames.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString firstFolder(FileKind kind) {
    return kind == FileKind::Application ? u"/Applications"_s : QDir::homePath();
}

QFileDialog* makePanel(const QString& title, FileKind kind) {
    auto* const panel = new QFileDialog(QApplication::activeWindow(), title, firstFolder(kind));
    panel->setFileMode(QFileDialog::ExistingFile);
    panel->setNameFilters({fileFilterOf(kind)});
    return panel;
}

/// Not by exec(), which would keep the program in a loop of the panel's own.
void openPanel(QFileDialog& panel) {
    panel.open();
}

} // namespace

QFuture<std::optional<QString>> NativeFilePanels::save(const QString& title, const QString& suggestedName,
                                                       FileKind kind) {
    QFileDialog* const panel = makePanel(title, kind);
    panel->setAcceptMode(QFileDialog::AcceptSave);
    panel->setFileMode(QFileDialog::AnyFile);
    panel->setDefaultSuffix(fileSuffixOf(kind));
    panel->selectFile(suggestedName);
    return m_open.show(panel, &QFileDialog::fileSelected, &openPanel);
}

QFuture<std::optional<QString>> NativeFilePanels::open(const QString& title, FileKind kind) {
    return m_open.show(makePanel(title, kind), &QFileDialog::fileSelected, &openPanel);
}

} // namespace quorvane
