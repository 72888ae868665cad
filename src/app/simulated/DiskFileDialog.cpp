#include "app/simulated/DiskFileDialog.h"

#include "ui/alerts/AlertDialog.h"

#include <QFileInfo>
#include <QLineEdit>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString suffixOf(FileKind kind) {
    return kind == FileKind::Profile ? u"json"_s : u"txt"_s;
}

QString filterOf(FileKind kind) {
    return kind == FileKind::Profile ? u"Profiles (*.json)"_s : u"Plain Text (*.txt)"_s;
}

} // namespace

DiskFileDialog::DiskFileDialog(const QString& title, FileKind kind)
    : QFileDialog(nullptr, title, QDir::homePath()) {
    setOption(DontUseNativeDialog);
    setOption(
        DontConfirmOverwrite); // Qt's own question would wait in a loop of its own; so would its answers to deletions
    setOption(ReadOnly);
    setNameFilters({filterOf(kind), u"All Files (*)"_s});
    setDefaultSuffix(suffixOf(kind));
    setFileMode(ExistingFile);
}

void DiskFileDialog::saveAs(const QString& suggestedName) {
    setAcceptMode(AcceptSave);
    setFileMode(AnyFile);
    selectFile(suggestedName);
}

/// What stands in the field, into which a click in the list puts its name, too. (Qt goes by the list first, where a part of what
/// was typed may have selected a folder.)
QString DiskFileDialog::namedPath() const {
    const QString name = findChild<QLineEdit*>(u"fileNameEdit"_s)->text();
    const QString path = directory().absoluteFilePath(name);
    const bool lacksSuffix = acceptMode() == AcceptSave && QFileInfo(path).suffix().isEmpty();
    return lacksSuffix && !QFileInfo(path).isDir() ? path + u'.' + defaultSuffix() : path;
}

void DiskFileDialog::accept() {
    const QFileInfo file(namedPath());
    const bool isMissing = acceptMode() == AcceptOpen ? !file.isFile() : file.fileName().isEmpty();
    if (file.isDir()) {
        setDirectory(file.absoluteFilePath());
    } else if (acceptMode() == AcceptSave && file.isFile() && !m_isAgreedToReplace) {
        askToReplace(file.fileName());
    } else if (!isMissing) {
        Q_EMIT chosen(file.absoluteFilePath());
        QDialog::accept();
    }
}

/// The alert goes with the dialog.
void DiskFileDialog::askToReplace(const QString& name) {
    const QString message = u"“"_s + name + u"” already exists. Do you want to replace it?"_s;
    const QString text = u"A file with that name is there already. Replacing it overwrites what it holds."_s;
    auto* const alert = new AlertDialog(Alert{message, text, {u"Replace"_s, u"Cancel"_s}, 1, 0});
    alert->setWindowModality(Qt::ApplicationModal);
    connect(this, &QDialog::finished, alert, &AlertDialog::reject);
    connect(alert, &AlertDialog::answered, this, [this](int button) {
        if (button == 0) {
            m_isAgreedToReplace = true;
            accept();
        }
    });
    alert->showOver(this);
}

} // namespace quorvane
