#include "framework/app/SessionBus.h"

#include "framework/app/Activation.h"
#include "framework/base/Immortal.h"
#include "framework/base/StandardError.h"
#include "framework/files/FileUri.h"
#include "framework/files/FolderItem.h"
#include "framework/windows/DocumentEvents.h"
#include "framework/windows/WindowList.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVariantMap>

#include <unistd.h>

#include <algorithm>

namespace {

constexpr int kAnswerMilliseconds = 2000;
// Of instances that end instead of answering. Where programs may not take a name, no try would be the last.
constexpr int kMostTries = 20;
constexpr QLatin1String kInterface("org.freedesktop.Application");

// "example.vendor.Program" lives at "/example/vendor/Program".
QString ObjectPath(const QString& programId) {
    return QLatin1Char('/') + QString(programId).replace(QLatin1Char('.'), QLatin1Char('/'));
}

// What the launcher gave the other start along: the last argument of every request.
constexpr QLatin1String kStartupId("desktop-startup-id");
constexpr QLatin1String kToken("activation-token");

QVariantMap PlatformData(const Activation& activation) {
    QVariantMap data;
    if (!activation.StartupId.empty())
        data.insert(kStartupId, QString::fromStdString(activation.StartupId));
    if (!activation.Token.empty())
        data.insert(kToken, QString::fromStdString(activation.Token));
    return data;
}

Activation ActivationIn(const QDBusMessage& request) {
    if (!request.signature().endsWith(QLatin1String("a{sv}")))
        return {};
    const auto data = qdbus_cast<QVariantMap>(request.arguments().constLast());
    return {data.value(kStartupId).toString().toStdString(), data.value(kToken).toString().toStdString()};
}

class ApplicationService : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override {
        return QStringLiteral("<interface name=\"org.freedesktop.Application\">"
                              "<method name=\"Activate\"><arg type=\"a{sv}\" direction=\"in\"/></method>"
                              "<method name=\"Open\"><arg type=\"as\" direction=\"in\"/>"
                              "<arg type=\"a{sv}\" direction=\"in\"/></method>"
                              "<method name=\"ActivateAction\"><arg type=\"s\" direction=\"in\"/>"
                              "<arg type=\"av\" direction=\"in\"/><arg type=\"a{sv}\" direction=\"in\"/></method>"
                              "</interface>");
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.interface() != kInterface || !Knows(message.member()))
            return false;
        // The caller gets its answer first: opening a file may take a dialog.
        if (message.isReplyRequired())
            bus.send(message.createReply());
        if (message.member() == QLatin1String("Activate")) {
            WindowList::BringToFront(ActivationIn(message));
            DocumentEvents::Instance().NewDocument();
        } else if (message.member() == QLatin1String("Open") && !message.arguments().isEmpty()) {
            WindowList::BringToFront(ActivationIn(message));
            for (const QString& address : message.arguments().constFirst().toStringList())
                OpenAddress(address.toStdString());
        }
        return true; // to an action too, of which the program has none
    }

private:
    static bool Knows(const QString& method) {
        return method == QLatin1String("Activate") || method == QLatin1String("Open") ||
               method == QLatin1String("ActivateAction");
    }

    static void OpenAddress(const std::string& address) {
        const std::string path = PathFromFileUri(address);
        if (!path.empty())
            DocumentEvents::Instance().OpenDocument(New<FolderItem>(path));
    }
};

// Asking for a bus that nobody started would start one.
bool BusIsThere() {
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           access((qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus")).toLocal8Bit().constData(), F_OK) ==
               0;
}

// Qt asks for the bus again and again, but remembers what came of it. No other thread may look into the environment
// meanwhile.
void RememberThatNoneIsThere() {
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    QDBusConnection::sessionBus();
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
}

// Takes out and gives what is not there.
std::vector<std::string> TakeMissing(std::vector<std::string>& paths) {
    const auto exists = [](const std::string& path) { return FolderItem(path).Exists(); };
    const auto missing = std::stable_partition(paths.begin(), paths.end(), exists);
    std::vector<std::string> taken(missing, paths.end());
    paths.erase(missing, paths.end());
    return taken;
}

QDBusMessage Request(const QString& instance, const QString& programId,
                     const std::optional<std::vector<std::string>>& paths, const Activation& activation) {
    const bool activate = !paths;
    auto message = QDBusMessage::createMethodCall(instance, ObjectPath(programId), kInterface,
                                                  activate ? QStringLiteral("Activate") : QStringLiteral("Open"));
    if (!activate) {
        QStringList addresses;
        for (const std::string& path : *paths)
            addresses << QString::fromStdString(FileUriFromPath(path));
        message << addresses;
    }
    message << PlatformData(activation);
    return message;
}

// Nothing if the instance ended before it answered: it has taken no file then, and another may serve by now. The bus
// tells such an end like a slow answer, but no longer knows the instance's own name.
std::optional<HandedOver> AskInstance(const QDBusConnection& bus, const QString& programId,
                                      std::optional<std::vector<std::string>> paths, const Activation& activation) {
    const std::vector<std::string> missing = paths ? TakeMissing(*paths) : std::vector<std::string>();
    const QString instance = bus.interface()->serviceOwner(programId);
    if (instance.isEmpty())
        return std::nullopt;
    const QDBusError error(
        bus.call(Request(instance, programId, paths, activation), QDBus::Block, kAnswerMilliseconds));
    if (error.isValid() && !bus.interface()->isServiceRegistered(instance))
        return std::nullopt;
    // One that is merely slow has got the files: they must not be opened twice.
    const bool slow = error.type() == QDBusError::NoReply || error.type() == QDBusError::TimedOut;
    if (error.isValid() && !slow)
        return HandedOver::No;
    for (const std::string& path : missing)
        LogNoSuchFile(path);
    return slow ? HandedOver::Unanswered : HandedOver::Yes;
}

} // namespace

HandedOver HandOver(const std::string& programId, const std::optional<std::vector<std::string>>& paths,
                    const Activation& activation) {
    if (!BusIsThere()) {
        RememberThatNoneIsThere();
        return HandedOver::No;
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return HandedOver::No;
    const QString id = QString::fromStdString(programId);
    static const Immortal<ApplicationService> service;
    bus.registerVirtualObject(ObjectPath(id), &*service);
    for (int tries = 0; tries < kMostTries && !bus.registerService(id); ++tries) {
        if (const std::optional<HandedOver> answer = AskInstance(bus, id, paths, activation))
            return *answer;
    }
    return HandedOver::No;
}

void StopServing(const std::string& programId) {
    if (QDBusConnection::sessionBus().isConnected())
        QDBusConnection::sessionBus().unregisterService(QString::fromStdString(programId));
}
