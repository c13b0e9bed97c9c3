#include "framework/desktop/Desktop.h"

#include "framework/base/Program.h"
#include "framework/desktop/Helper.h"

#include <QApplication>

void Beep() {
    QApplication::beep();
}

void ShowURL(const std::string& address) {
    RunHelper("opener", {"url", address});
}

void OpenFiles(const std::vector<std::string>& absolutePaths) {
    std::vector<std::string> arguments{"open"};
    arguments.insert(arguments.end(), absolutePaths.begin(), absolutePaths.end());
    RunHelper("opener", arguments);
}

void RevealFile(const std::string& absolutePath) {
    RunHelper("opener", {"reveal", absolutePath});
}

void NotifyUrgently(const std::string& summary, const std::string& text) {
    const ProgramIdentity& program = ThisProgram();
    RunHelper("opener", {"notify", program.Name, program.Id, summary, text});
}
