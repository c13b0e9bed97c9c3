// The program's neighbours on a desktop, as far as the tests need them: a file manager that writes down what it is
// asked to show, services for notifications and against suspending, another instance of the program itself, which is
// just about to end, and a launcher that asks for an action. One of a name waits until the one before it has ended.
// usage: program_pretend NAME-ON-THE-BUS | act NAME-ON-THE-BUS

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>

#include <cstdio>
#include <cstdlib>

namespace {

void Say(const QByteArray& line) {
    std::puts(line.constData());
    std::fflush(stdout);
}

// Writes down what it is asked to do. Ends instead of answering what it does not know.
class Service : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        return bus.send(
            message.createReply(Answer(message.interface() + u'.' + message.member(), message.arguments())));
    }

private:
    static QVariantList Answer(const QString& request, const QVariantList& words) {
        if (request == QLatin1String("org.freedesktop.FileManager1.ShowItems")) {
            for (const QString& address : words[0].toStringList())
                Say(address.toUtf8());
            return {};
        }
        if (request == QLatin1String("org.freedesktop.Notifications.GetCapabilities"))
            return {QStringList{QStringLiteral("body-markup")}};
        if (request == QLatin1String("org.freedesktop.Notifications.Notify")) {
            const bool urgent = qdbus_cast<QVariantMap>(words[6])[QStringLiteral("urgency")].toUInt() == 2;
            Say((urgent ? "urgent " : "") + words[3].toByteArray() + ": " + words[4].toByteArray());
            return {uint32_t{1}};
        }
        if (request == QLatin1String("org.freedesktop.portal.Inhibit.Inhibit")) {
            const auto options = qdbus_cast<QVariantMap>(words[2]);
            Say("Inhibit " + words[1].toByteArray() + ' ' + options[QStringLiteral("reason")].toByteArray());
            return {QVariant::fromValue(QDBusObjectPath(QStringLiteral("/request")))};
        }
        if (request == QLatin1String("org.gnome.SessionManager.Inhibit")) {
            Say("Inhibit " + words[3].toByteArray() + ' ' + words[2].toByteArray());
            return {uint32_t{7}};
        }
        if (request == QLatin1String("org.freedesktop.portal.Request.Close"))
            Say("Close");
        else if (request == QLatin1String("org.gnome.SessionManager.Uninhibit"))
            Say("Uninhibit " + words[0].toByteArray());
        else
            std::_Exit(0);
        return {};
    }
};

QString PathOf(QString name) {
    return QLatin1Char('/') + name.replace(u'.', u'/');
}

// Says what comes of it.
void AskForAction(QDBusConnection& bus, const QString& name) {
    auto request = QDBusMessage::createMethodCall(name, PathOf(name), QStringLiteral("org.freedesktop.Application"),
                                                  QStringLiteral("ActivateAction"));
    request << QStringLiteral("unknown") << QVariantList() << QVariantMap();
    const QDBusMessage answer = bus.call(request);
    Say(answer.type() == QDBusMessage::ReplyMessage ? "answered" : answer.errorName().toUtf8());
}

} // namespace

int main(int count, char** words) {
    const QCoreApplication application(count, words);
    const QString role = QCoreApplication::arguments().at(1);
    Service service;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (role == QLatin1String("act"))
        AskForAction(bus, QCoreApplication::arguments().at(2));
    else if (!bus.registerVirtualObject(QStringLiteral("/"), &service, QDBusConnection::SubPath) ||
             !bus.interface()->registerService(role, QDBusConnectionInterface::QueueService).isValid())
        return 1;
    std::fputs("ready\n", stderr);
    return QCoreApplication::exec();
}
