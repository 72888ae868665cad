// The program, which tells when it is seen first.

#include "FirstPaint.h"
#include "app/WindowProgram.h"

#include <QApplication>

int main(int argumentCount, char** arguments) {
    const std::unique_ptr<QApplication> application = quorvane::makeApplication(argumentCount, arguments);
    const quorvane::FirstPaint firstPaint(quorvane::printTimeOfDisplay);
    return quorvane::runProgram();
}
