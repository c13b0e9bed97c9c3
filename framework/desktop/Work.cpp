#include "framework/desktop/Work.h"

#include "framework/base/Immortal.h"
#include "framework/base/ProgramIdentity.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QVariantMap>

#include <array>
#include <functional>
#include <optional>
#include <utility>

namespace {

// The portal's and the session manager's flags.
constexpr uint32_t kLogout = 1;
constexpr uint32_t kSuspend = 4;

struct Service {
    QLatin1String name, path, interface, inhibit;
    bool onSystemBus;
};

// In the order in which they are asked: the first that agrees counts.
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
    case 0:
        return {QString(), kLogout | kSuspend, QVariantMap{{QStringLiteral("reason"), why}}};
    case 1:
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
    case 0:
        call =
            QDBusMessage::createMethodCall(asked.name, answer.value<QDBusObjectPath>().path(),
                                           QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Close"));
        break;
    case 1:
        call << answer;
        break;
    default:
        return [descriptor = answer.value<QDBusUnixFileDescriptor>()]() mutable { descriptor = {}; };
    }
    return [call, bus = BusOf(asked)] { bus.send(call); };
}

class Inhibition {
public:
    void Begin(const QString& why) {
        if (std::exchange(wanted_, true))
            return;
        why_ = why;
        if (!asking_ && !giveBack_)
            Ask(0);
    }

    void End() {
        wanted_ = false;
        if (giveBack_)
            std::exchange(giveBack_, nullptr)();
    }

private:
    void Ask(std::size_t service) {
        asking_ = service < kServices.size();
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
        auto* const answer = new QDBusPendingCallWatcher(bus.asyncCall(call));
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

    QString why_;
    bool wanted_ = false;
    bool asking_ = false;
    std::function<void()> giveBack_; // while a service has agreed
};

const Immortal<Inhibition> inhibition;

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
    inhibition->Begin(QString::fromStdString(why));
}

void EndWork() {
    inhibition->End();
    TellDock({{QStringLiteral("progress-visible"), false}});
}

void ShowProgress(double share) {
    TellDock({{QStringLiteral("progress"), share}, {QStringLiteral("progress-visible"), true}});
}
