#include "framework/desktop/Work.h"

#include "framework/base/Immortal.h"
#include "framework/base/Program.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QVariantMap>

#include <array>
#include <functional>
#include <limits>
#include <optional>
#include <utility>

namespace {

// The portal's and the session manager's flags.
constexpr uint32_t kLogout = 1;
constexpr uint32_t kSuspend = 4;

constexpr int kNoTimeLimit = std::numeric_limits<int>::max(); // one that agrees late is to be given back all the same

struct Service {
    QLatin1String name, path, interface, inhibit;
    bool onSystemBus;
};

enum : std::size_t { kPortal, kSessionManager, kLoginManager };

constexpr std::array kServices{
    Service{QLatin1String("org.freedesktop.portal.Desktop"), QLatin1String("/org/freedesktop/portal/desktop"),
            QLatin1String("org.freedesktop.portal.Inhibit"), QLatin1String("Inhibit"), false},
    Service{QLatin1String("org.gnome.SessionManager"), QLatin1String("/org/gnome/SessionManager"),
            QLatin1String("org.gnome.SessionManager"), QLatin1String("Inhibit"), false},
    Service{QLatin1String("org.freedesktop.login1"), QLatin1String("/org/freedesktop/login1"),
            QLatin1String("org.freedesktop.login1.Manager"), QLatin1String("Inhibit"), true}};

QDBusConnection BusOf(const Service& service) {
    return service.onSystemBus ? QDBusConnection::systemBus() : QDBusConnection::sessionBus();
}

QVariantList ArgumentsFor(std::size_t service, const QString& why) {
    const QString name = QString::fromStdString(ThisProgram().Name);
    const QString id = QString::fromStdString(ThisProgram().Id);
    switch (service) {
    case kPortal:
        return {QString(), kLogout | kSuspend, QVariantMap{{QStringLiteral("reason"), why}}};
    case kSessionManager:
        return {id, uint32_t{0}, why, kLogout | kSuspend};
    default:
        return {QStringLiteral("shutdown:sleep"), name, why, QStringLiteral("block")};
    }
}

// What ends the inhibition that the service has answered for. A descriptor ends it when its last copy goes.
std::function<void()> GiveBack(std::size_t service, const QVariant& answer) {
    const Service& asked = kServices[service];
    auto call = QDBusMessage::createMethodCall(asked.name, asked.path, asked.interface, QStringLiteral("Uninhibit"));
    switch (service) {
    case kPortal:
        call =
            QDBusMessage::createMethodCall(asked.name, answer.value<QDBusObjectPath>().path(),
                                           QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Close"));
        break;
    case kSessionManager:
        call << answer;
        break;
    default:
        return [descriptor = answer.value<QDBusUnixFileDescriptor>()]() mutable { descriptor = {}; };
    }
    return [call, bus = BusOf(asked)] { bus.send(call); };
}

// Asks one service after the other, up to the last, until one agrees.
class Inhibition {
public:
    Inhibition(std::size_t first, std::size_t last) : first_(first), last_(last) {}

    void Begin(const QString& why) {
        if (std::exchange(wanted_, true))
            return;
        why_ = why;
        if (!asking_ && !giveBack_)
            Ask(first_);
    }

    void End() {
        wanted_ = false;
        if (giveBack_)
            std::exchange(giveBack_, nullptr)();
    }

private:
    void Ask(std::size_t service) {
        asking_ = service <= last_;
        if (!asking_)
            return;
        const Service& asked = kServices[service];
        const QDBusConnection bus = BusOf(asked);
        if (!bus.isConnected()) {
            Ask(service + 1);
            return;
        }
        auto call = QDBusMessage::createMethodCall(asked.name, asked.path, asked.interface, asked.inhibit);
        call.setArguments(ArgumentsFor(service, why_));
        auto* const answer = new QDBusPendingCallWatcher(bus.asyncCall(call, kNoTimeLimit));
        QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [this, answer, service] {
            answer->deleteLater();
            Answered(service, answer->reply());
        });
    }

    void Answered(std::size_t service, const QDBusMessage& reply) {
        const bool agreed = reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty();
        asking_ = false;
        if (agreed)
            giveBack_ = GiveBack(service, reply.arguments().constFirst());
        if (!wanted_)
            End(); // the work was done meanwhile
        else if (!agreed)
            Ask(service + 1);
    }

    const std::size_t first_, last_;
    QString why_;
    bool wanted_ = false;
    bool asking_ = false;
    std::function<void()> giveBack_; // while a service has agreed
};

const Immortal<Inhibition> bySession{kPortal, kSessionManager};
// Always: what the portal says at once is not yet what its desktop will say.
const Immortal<Inhibition> byMachine{kLoginManager, kLoginManager};

void TellDock(const QVariantMap& properties) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    auto update =
        QDBusMessage::createSignal(QStringLiteral("/com/canonical/unity/launcherentry/1"),
                                   QStringLiteral("com.canonical.Unity.LauncherEntry"), QStringLiteral("Update"));
    update << QStringLiteral("application://%1.desktop").arg(QString::fromStdString(ThisProgram().Id)) << properties;
    bus.send(update);
}

} // namespace

void BeginWork(const std::string& why) {
    for (const auto* const inhibition : {&bySession, &byMachine})
        (*inhibition)->Begin(QString::fromStdString(why));
}

void EndWork() {
    for (const auto* const inhibition : {&bySession, &byMachine})
        (*inhibition)->End();
    TellDock({{QStringLiteral("progress-visible"), false}});
}

void ShowProgress(double share) {
    TellDock({{QStringLiteral("progress"), share}, {QStringLiteral("progress-visible"), true}});
}
