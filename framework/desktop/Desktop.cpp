#include "framework/desktop/Desktop.h"

#include "framework/desktop/Helper.h"

#include <QApplication>

void Beep() {
    QApplication::beep();
}

void ShowURL(const std::string& address) {
    RunHelper("ombrivel-opener", {"url", address});
}

void RevealFile(const std::string& absolutePath) {
    RunHelper("ombrivel-opener", {"reveal", absolutePath});
}
