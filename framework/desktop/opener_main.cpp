// Talks to the desktop's file manager, openers and notifications: a process of its own, so that it outlives the program
// that asked.

#include <gio/gio.h>
#include <unistd.h>

#include <cstdio>
#include <string_view>

namespace {

// A file manager that has to be started first may take its time.
constexpr int kAnswerMilliseconds = 20000;

constexpr const char* kBusAddress = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* kNoBus = "disabled:";

// Asking for a bus that nobody started would start one, with nobody to end it.
void StartNoBus() {
    char* usualPlace = g_build_filename(g_get_user_runtime_dir(), "bus", nullptr);
    if (g_getenv(kBusAddress) == nullptr && access(usualPlace, F_OK) != 0)
        g_setenv(kBusAddress, kNoBus, TRUE);
    g_free(usualPlace);
}

bool OpenAddress(const char* address) {
    GAppLaunchContext* context = g_app_launch_context_new();
    if (g_strcmp0(g_getenv(kBusAddress), kNoBus) == 0)
        g_app_launch_context_unsetenv(context, kBusAddress); // which is for this process only
    const bool opened = g_app_info_launch_default_for_uri(address, context, nullptr) != 0;
    g_object_unref(context);
    return opened;
}

bool OpenFile(GFile* file) {
    char* address = g_file_get_uri(file);
    const bool opened = OpenAddress(address);
    g_free(address);
    return opened;
}

bool AskFileManager(GFile* file) {
    GDBusConnection* bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (bus == nullptr)
        return false;
    char* address = g_file_get_uri(file);
    const char* addresses[] = {address, nullptr};
    GVariant* answer =
        g_dbus_connection_call_sync(bus, "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                                    "org.freedesktop.FileManager1", "ShowItems", g_variant_new("(^ass)", addresses, ""),
                                    nullptr, G_DBUS_CALL_FLAGS_NONE, kAnswerMilliseconds, nullptr, nullptr);
    g_free(address);
    const bool answered = answer != nullptr;
    if (answered)
        g_variant_unref(answer);
    g_object_unref(bus);
    return answered;
}

bool Reveal(GFile* file) {
    if (AskFileManager(file))
        return true;
    GFile* folder = g_file_get_parent(file);
    const bool opened = folder != nullptr && OpenFile(folder);
    g_clear_object(&folder);
    return opened;
}

GVariant* AskNotifications(GDBusConnection* bus, const char* method, GVariant* arguments, const char* answer) {
    return g_dbus_connection_call_sync(bus, "org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                                       "org.freedesktop.Notifications", method, arguments, G_VARIANT_TYPE(answer),
                                       G_DBUS_CALL_FLAGS_NONE, kAnswerMilliseconds, nullptr, nullptr);
}

// Only some take marks of markup for what they are, and want those of a text written otherwise.
bool NotificationsReadMarkup(GDBusConnection* bus) {
    GVariant* answer = AskNotifications(bus, "GetCapabilities", nullptr, "(as)");
    if (answer == nullptr)
        return false;
    const char** capabilities = nullptr;
    g_variant_get(answer, "(^a&s)", &capabilities);
    const bool readMarkup = g_strv_contains(capabilities, "body-markup") != 0;
    g_free(static_cast<void*>(capabilities));
    g_variant_unref(answer);
    return readMarkup;
}

bool ShowNotification(const char* program, const char* id, const char* summary, const char* text) {
    GDBusConnection* bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (bus == nullptr)
        return false;
    constexpr guchar kUrgent = 2;
    GVariantBuilder hints;
    g_variant_builder_init(&hints, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&hints, "{sv}", "urgency", g_variant_new_byte(kUrgent));
    g_variant_builder_add(&hints, "{sv}", "desktop-entry", g_variant_new_string(id));
    char* shown = NotificationsReadMarkup(bus) ? g_markup_escape_text(text, -1) : g_strdup(text);
    GVariant* answer = AskNotifications(
        bus, "Notify", g_variant_new("(susssasa{sv}i)", program, 0, id, summary, shown, nullptr, &hints, -1), "(u)");
    g_free(shown);
    const bool taken = answer != nullptr;
    if (taken)
        g_variant_unref(answer);
    g_object_unref(bus);
    return taken;
}

int Notify(const char* program, const char* id, const char* summary, const char* text) {
    if (!ShowNotification(program, id, summary, text))
        std::fprintf(stderr, "%s: %s. %s\n", program, summary, text);
    return 0;
}

// An application that the bus starts has been asked, but the message may still be on its way out.
void FlushBus() {
    GDBusConnection* bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (bus == nullptr)
        return;
    g_dbus_connection_flush_sync(bus, nullptr, nullptr);
    g_object_unref(bus);
}

} // namespace

int main(int count, char** words) {
    if (count < 3)
        return 2;
    // A launcher's word about the start of the program, which Qt may not have taken away: not for what is opened here.
    for (const char* const ofTheStart : {"DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN"})
        g_unsetenv(ofTheStart);
    StartNoBus();

    const std::string_view verb = words[1];
    if (verb == "notify")
        return count == 6 ? Notify(words[2], words[3], words[4], words[5]) : 2;
    bool done = true;
    for (int i = 2; i < count; ++i) {
        if (verb == "url") {
            done = OpenAddress(words[i]) && done;
            continue;
        }
        GFile* file = g_file_new_for_path(words[i]);
        done = (verb == "reveal" ? Reveal(file) : OpenFile(file)) && done;
        g_object_unref(file);
    }
    FlushBus();
    return done ? 0 : 1;
}
