#include "framework/app/EndRequests.h"

#include "framework/app/Application.h"
#include "framework/windows/WindowList.h"

#include <QEvent>
#include <QGuiApplication>
#include <QSessionManager>
#include <QSocketNotifier>

#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

int doorbell = -1;

void Ring(int) {
    const uint64_t once = 1;
    [[maybe_unused]] const auto written = write(doorbell, &once, sizeof once);
}

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

void ListenToEndSignals(const std::function<void()>& end) {
    doorbell = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    auto* const notifier = new QSocketNotifier(doorbell, QSocketNotifier::Read); // lives as long as the process
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, end);

    struct sigaction action = {};
    action.sa_handler = Ring;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        struct sigaction before = {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) // as under nohup
            sigaction(signal, &action, nullptr);
    }
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
}

void AnswerEndOfSession() {
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, qApp, Answer, Qt::DirectConnection);
    qApp->installEventFilter(new SessionEvents(qApp));
}
