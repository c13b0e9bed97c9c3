#include "framework/app/StartFailure.h"

#include "framework/base/Immortal.h"
#include "framework/base/StandardError.h"
#include "framework/windows/MessageDialog.h"

#include <QApplication>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

// What Qt has told.
struct Notice {
    bool ofDisplay; // it comes from the connection to the display
    std::string text;
    std::string line; // as Qt would write it
};
const Immortal<std::vector<Notice>> notices;

void Tell(const std::string& reason) {
    LogToStderr("the program could not start: " + reason);
}

// What names the display: the first that comes from the connection. The last word is about Qt's plug-ins.
const Notice& AboutDisplay(const Notice& last) {
    const auto ofDisplay = [](const Notice& notice) { return notice.ofDisplay; };
    const auto found = std::find_if(notices->begin(), notices->end(), ofDisplay);
    if (found != notices->end())
        return *found;
    return notices->empty() ? last : notices->front();
}

void Take(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    const bool ofDisplay = QLatin1String(context.category).startsWith(QLatin1String("qt.qpa"));
    const Notice notice{ofDisplay, message.trimmed().toStdString(),
                        qFormatLogMessage(type, context, message).toStdString()};
    if (type == QtFatalMsg) {
        const std::string& text = AboutDisplay(notice).text;
        Tell("no display: " + text.substr(0, text.find('\n')));
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
        dialog->Icon = DialogIcon::Error;
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
