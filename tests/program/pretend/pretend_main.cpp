// The program's neighbours on a desktop, as far as the tests need them: a file manager that writes down what it is
// asked to show, a window out of which files are dragged, and another instance of the program itself, which is just
// about to end.

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QWidget>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

void Say(const QByteArray& line) {
    std::puts(line.constData());
    std::fflush(stdout);
}

class FileManager : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.interface() != QLatin1String("org.freedesktop.FileManager1") ||
            message.member() != QLatin1String("ShowItems"))
            return false;
        for (const QString& address : message.arguments().constFirst().toStringList())
            Say(address.toUtf8());
        bus.send(message.createReply());
        return true;
    }
};

// Ends instead of answering what it is asked first.
class EndingInstance : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage&, const QDBusConnection&) override { std::_Exit(0); }
};

// Serves requests to an object on the bus under that name.
bool Serve(const QString& name, const QString& path, QDBusVirtualObject& object) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.registerVirtualObject(path, &object) && bus.registerService(name);
}

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

} // namespace

int main(int count, char** words) {
    const QApplication application(count, words);
    const QStringList arguments = QApplication::arguments();
    const QString role = arguments.value(1);

    FileManager fileManager;
    EndingInstance endingInstance;
    DragSource dragSource(arguments.mid(2));
    bool ready = true;
    if (role == QLatin1String("file-manager"))
        ready = Serve(QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
                      fileManager);
    else if (role == QLatin1String("ending-instance"))
        ready = Serve(QStringLiteral("example.halvrick.Ombrivel"), QStringLiteral("/example/halvrick/Ombrivel"),
                      endingInstance);
    else
        dragSource.show();
    if (!ready)
        return 1;
    Say("ready");
    return QApplication::exec();
}
