#include "framework/desktop/Desktop.h"

#include "framework/desktop/Opener.h"

#include <QApplication>

void Beep() {
    QApplication::beep();
}

void ShowURL(const std::string& address) {
    RunOpener("url", {address});
}

void RevealFile(const std::string& absolutePath) {
    RunOpener("reveal", {absolutePath});
}
