#include "framework/app/EndOfSession.h"

#include "framework/app/RunningApplication.h"
#include "framework/windows/Window.h"

#include <QGuiApplication>
#include <QSessionManager>

#include <algorithm>

namespace {

bool agreed = false;

bool IsAsking() {
    const auto windows = Window::All();
    return std::any_of(windows.begin(), windows.end(), [](const Ref<Window>& window) { return window->IsAsking(); });
}

// A session that lets nobody ask ends the program with its operations running, as a signal does. One that is called off
// by another program after ours has agreed has stopped our operations all the same: they were given up by the user.
void Answer(QSessionManager& session) {
    if (!session.allowsInteraction())
        agreed = true;
    else
        agreed = !IsAsking() && !WindowsRefuse();
    if (!agreed)
        session.cancel();
    session.release();
}

} // namespace

void AnswerEndOfSession() {
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, qApp, Answer, Qt::DirectConnection);
}

bool EndOfSessionIsAgreed() {
    return agreed;
}

void EndWithSession() {
    SaveAndEnd(0);
}
