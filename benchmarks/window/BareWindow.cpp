// What the program is compared with: an empty main window of the same size.

#include "FirstPaint.h"

#include <QApplication>
#include <QMainWindow>

int main(int argumentCount, char** arguments) {
    const QApplication application(argumentCount, arguments);
    const quorvane::FirstPaint firstPaint(quorvane::printTimeOfDisplay);
    QMainWindow window;
    window.resize(900, 700);
    window.show();
    return QApplication::exec();
}
