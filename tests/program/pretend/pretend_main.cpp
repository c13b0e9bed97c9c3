// The program's neighbours on a desktop, as far as the tests need them: a file manager that writes down what it is
// asked to show, another instance of the program itself, which is just about to end, and a window out of which files
// are dragged, and a launcher that asks for an action. One of a name waits until the one before it has ended.
// usage: program_pretend NAME-ON-THE-BUS | drag ADDRESS... | act NAME-ON-THE-BUS

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QWidget>

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

// Starts a drag of the given addresses as soon as the pointer moves with its button down. Says "accepted" when the
// program beneath the pointer would take them, and "ended" when the drag is over for this side.
class DragSource : public QWidget {
public:
    // In the corner of the screen from its first moment on: no window manager moves it under the pointer.
    explicit DragSource(const QStringList& addresses)
        : QWidget(nullptr, Qt::BypassWindowManagerHint), addresses_(addresses.join(QLatin1String("\r\n")).toUtf8()) {
        setGeometry(0, 0, 200, 100);
    }

protected:
    void mousePressEvent(QMouseEvent*) override {}

    void mouseMoveEvent(QMouseEvent*) override {
        auto* const drag = new QDrag(this);
        auto* const content = new QMimeData;
        content->setData(QStringLiteral("text/uri-list"), addresses_);
        drag->setMimeData(content);
        connect(drag, &QDrag::actionChanged, this, [](Qt::DropAction action) {
            if (action == Qt::CopyAction)
                Say("accepted");
        });
        drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::MoveAction);
        Say("ended");
    }

private:
    QByteArray addresses_;
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
    const QApplication application(count, words);
    const QString role = QApplication::arguments().at(1);
    DragSource dragSource(QApplication::arguments().mid(2));
    Service service;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (role == QLatin1String("drag"))
        dragSource.show();
    else if (role == QLatin1String("act"))
        AskForAction(bus, QApplication::arguments().at(2));
    else if (!bus.registerVirtualObject(PathOf(role), &service) ||
             !bus.interface()->registerService(role, QDBusConnectionInterface::QueueService).isValid())
        return 1;
    std::fputs("ready\n", stderr);
    return QApplication::exec();
}
