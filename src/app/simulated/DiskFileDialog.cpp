#include "app/simulated/DiskFileDialog.h"

#include "app/FileKindNames.h"
#include "core/OneLine.h"
#include "ui/alerts/AlertDialog.h"

#include <QFileInfo>
#include <QLineEdit>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// As a shell reads it.
QString withHomeFolder(const QString& name) {
    const bool isAtHome = name == u"~" || name.startsWith(u"~/");
    return isAtHome ? QDir::homePath() + name.mid(1) : name;
}

} // namespace

DiskFileDialog::DiskFileDialog(const QString& title, FileKind kind)
    : QFileDialog(nullptr, title, QDir::homePath()) {
    setOption(DontUseNativeDialog);
    setOption(DontConfirmOverwrite); // Qt's question waits in a loop of its own, and so do those before its deletions
    setOption(ReadOnly);
    setNameFilters({fileFilterOf(kind), u"All Files (*)"_s});
    setDefaultSuffix(fileSuffixOf(kind));
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
    const QString path = directory().absoluteFilePath(withHomeFolder(name));
    const bool lacksSuffix = acceptMode() == AcceptSave && QFileInfo(path).suffix().isEmpty();
    return lacksSuffix && !QFileInfo(path).isDir() ? path + u'.' + defaultSuffix() : path;
}

void DiskFileDialog::accept() {
    const QFileInfo file(namedPath());
    const bool isMissing = acceptMode() == AcceptOpen ? !file.isFile() : file.fileName().isEmpty();
    if (file.isDir()) {
        setDirectory(file.absoluteFilePath());
    } else if (acceptMode() == AcceptSave && file.exists()) {
        askToReplace(file);
    } else if (!isMissing) {
        choose(file);
    }
}

void DiskFileDialog::choose(const QFileInfo& file) {
    Q_EMIT chosen(file.absoluteFilePath());
    done(Accepted); // accept() of Qt's own dialog would go by what is selected in its list
}

/// The alert goes with the dialog.
void DiskFileDialog::askToReplace(const QFileInfo& file) {
    const QString message = u"“"_s + nameOnOneLine(file.fileName()) + u"” already exists. Do you want to replace it?"_s;
    const QString text = u"A file with that name is there already. Replacing it overwrites what it holds."_s;
    auto* const alert = new AlertDialog(Alert{message, text, {u"Replace"_s, u"Cancel"_s}, 1, 0});
    alert->setWindowModality(Qt::ApplicationModal);
    connect(this, &QDialog::finished, alert, &AlertDialog::reject);
    connect(alert, &AlertDialog::answered, this, [this, file](int button) {
        if (button == 0) {
            choose(file);
        }
    });
    alert->showOver(this);
}

} // namespace quorvane
