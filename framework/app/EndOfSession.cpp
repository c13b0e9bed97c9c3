#include "framework/app/EndOfSession.h"

#include "framework/app/RunningApplication.h"
#include "framework/windows/OpenWindows.h"

#include <QGuiApplication>
#include <QSessionManager>

namespace {

bool agreed = false;

// A session that lets nobody ask ends the program with its operations running, as a signal does. One that is called off
// by another program after ours has agreed has stopped our operations all the same: they were given up by the user.
void Answer(QSessionManager& session) {
    if (!session.allowsInteraction())
        agreed = true;
    else
        agreed = !OpenWindows::AnyIsAsking() && !OpenWindows::Refuse();
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
