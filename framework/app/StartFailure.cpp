#include "framework/app/StartFailure.h"

#include "framework/base/Immortal.h"
#include "framework/base/StandardError.h"
#include "framework/windows/MessageDialog.h"

#include <QApplication>
#include <QWidget>

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr int32_t kErrorIcon = 2;

// What the toolkit has told.
struct Notice {
    std::string text;
    std::string line; // as the toolkit would write it
};
const Immortal<std::vector<Notice>> notices;

void Tell(const std::string& reason) {
    TellStandardError("the program could not start: " + reason);
}

void Take(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    const Notice notice{message.trimmed().toStdString(), qFormatLogMessage(type, context, message).toStdString()};
    if (type == QtFatalMsg) {
        // The first notice names the display; the last word is about the toolkit's plug-ins.
        Tell("no display: " + (notices->empty() ? notice : notices->front()).text);
        std::_Exit(1);
    }
    if (type != QtDebugMsg)
        notices->push_back(notice);
    else
        std::fprintf(stderr, "%s\n", notice.line.c_str());
}

bool HasScreen() {
    return qGuiApp != nullptr && QApplication::platformName() != QLatin1String("offscreen");
}

} // namespace

void FailStart(const std::string& reason) {
    Tell(reason);
    if (HasScreen()) {
        for (QWidget* const unfinished : QApplication::topLevelWidgets())
            unfinished->hide();
        const auto dialog = New<MessageDialog>();
        dialog->Icon = kErrorIcon;
        dialog->ActionButton->Caption = "OK"; // no language has been read
        dialog->Message = QApplication::applicationName().toStdString() + " could not start.";
        dialog->Explanation = reason;
        dialog->ShowModal();
    }
    std::_Exit(1);
}

void BeginToConnect() {
    qInstallMessageHandler(Take);
}

void EndToConnect() {
    qInstallMessageHandler(nullptr);
    for (const Notice& notice : *notices)
        std::fprintf(stderr, "%s\n", notice.line.c_str());
    notices->clear();
}
