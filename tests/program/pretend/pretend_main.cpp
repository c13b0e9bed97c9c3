// The program's neighbours on a desktop, as far as the tests need them: a file manager that writes down what it is
// asked to show, another instance of the program itself, which is just about to end, and a launcher that asks for an
// action. One of a name waits until the one before it has ended.
// usage: program_pretend NAME-ON-THE-BUS | act NAME-ON-THE-BUS

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include <cstdio>
#include <cstdlib>

namespace {

void Say(const QByteArray& line) {
    std::puts(line.constData());
    std::fflush(stdout);
}

// Writes down the files that it is asked to show. Ends instead of answering anything else.
class Service : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.interface() + message.member() != QLatin1String("org.freedesktop.FileManager1ShowItems"))
            std::_Exit(0);
        for (const QString& address : message.arguments().constFirst().toStringList())
            Say(address.toUtf8());
        return bus.send(message.createReply());
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
    else if (!bus.registerVirtualObject(PathOf(role), &service) ||
             !bus.interface()->registerService(role, QDBusConnectionInterface::QueueService).isValid())
        return 1;
    std::fputs("ready\n", stderr);
    return QCoreApplication::exec();
}
