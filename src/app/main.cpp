// The window, on the host of the platform.

#include "app/WindowProgram.h"

#include <QApplication>

int main(int argumentCount, char** arguments) {
    const std::unique_ptr<QApplication> application = quorvane::makeApplication(argumentCount, arguments);
    return quorvane::runProgram();
}
