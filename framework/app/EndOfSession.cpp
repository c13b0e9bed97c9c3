#include "framework/app/EndOfSession.h"

#include "framework/app/Application.h"
#include "framework/windows/WindowList.h"

#include <QEvent>
#include <QGuiApplication>
#include <QSessionManager>

namespace {

// The windows have agreed to the session's end, and nobody has used the program since. A session that only saves asks
// just the same, and one that is called off by another program says nothing more.
bool agreed = false;

// A session that lets nobody ask ends the program with its operations running, as a signal does. One that is called off
// by another program after ours has agreed has stopped our operations all the same: they were given up by the user.
void Answer(QSessionManager& session) {
    if (!session.allowsInteraction())
        agreed = true;
    else
        agreed = !WindowList::AnyIsAsking() && !WindowList::Refuse();
    if (!agreed)
        session.cancel();
    session.release();
}

class SessionEvents : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::MouseButtonPress:
        case QEvent::TouchBegin:
        case QEvent::TabletPress:
        case QEvent::Drop:
            agreed = false; // the session lives on
            return false;
        case QEvent::Quit: // the session's word to end
            if (watched != parent())
                return false;
            if (agreed)
                SaveAndEnd(0);
            Quit(0);
            return true;
        default:
            return false;
        }
    }
};

} // namespace

void AnswerEndOfSession() {
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, qApp, Answer, Qt::DirectConnection);
    qApp->installEventFilter(new SessionEvents(qApp));
}
