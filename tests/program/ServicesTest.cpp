// What the program asks of a desktop's services, and what it tells a screen reader.

#include "tests/program/WholeProgramTest.h"

#include <csignal>
#include <sys/resource.h>

namespace {

constexpr std::size_t kMegabyte = 1048576;

} // namespace

using Services = WholeProgramTest;

TEST_F(Services, ANotificationTellsWhatIsNotWholeOrElseStandardError) {
    const Process& notifications = desktop.Pretend({"org.freedesktop.Notifications"});
    const Program& program = Start({});
    program.OnlyWindow();
    const rlimit fullDisk{400'000, RLIM_INFINITY}; // as far as the program can see
    prlimit(program.Id(), RLIMIT_FSIZE, &fullDisk, nullptr);
    const std::string why =
        "” is not complete%Reading or writing failed: File too large. Its parts are in the Trash.\n";
    const auto told = [&why](std::string line, const std::string& file, const std::string& mark) {
        return line.replace(line.find('%'), 1, "“" + file + why).replace(line.rfind('%'), 1, mark);
    };
    WriteSeries("film.mov");
    EXPECT_EQ(StartAgain({"film.mov.001"}), 0);
    Await("a notification", [&] { return notifications.Output() == told("urgent %", "film.mov", ": "); });

    kill(notifications.Id(), SIGTERM);
    WriteSeries("song.mp3");
    EXPECT_EQ(StartAgain({"song.mp3.001"}), 0);
    Await("the line", [&] { return program.Errors() == told("Ombrivel: %", "song.mp3", ". "); });
}

TEST_F(Services, TheDesktopIsAskedToStayAwakeAndShownTheProgress) {
    const Process& dock = desktop.Serve({"dbus-monitor", "interface=com.canonical.Unity.LauncherEntry"});
    Start({}).OnlyWindow();
    // The second is asked first.
    const std::pair<std::string, std::string> services[] = {{"org.gnome.SessionManager", "Uninhibit 7\n"},
                                                            {"org.freedesktop.portal.Desktop", "Close\n"}};
    pid_t last = 0;
    for (const auto& service : services) {
        const Process& asked = desktop.Pretend({service.first});
        last = asked.Id();
        for (const char* const part : {"film.mov.001", "film.mov.002.download"})
            WriteFile(File(part), std::string(2 * kMegabyte, 'x'));
        EXPECT_EQ(StartAgain({"film.mov.001"}), 0);
        const std::string request = "Inhibit 5 Files are being cut or glued\n";
        Await("the request", [&] { return asked.Output() == request; });
        Await("the progress", [&] { return dock.Output().find("double 0.5") != std::string::npos; });
        FinishDownload("film.mov");
        Await("the end", [&] { return asked.Output() == request + service.second; });
        std::filesystem::remove(File("film.mov"));
    }
    kill(last, SIGSTOP); // it hangs, and nothing waits for it
    const std::string song = WriteSeries("song.mp3");
    EXPECT_EQ(StartAgain({"song.mp3.001"}), 0);
    Await(
        "a glue", [&] { return Holds(Trashed("song.mp3.001"), song.substr(0, 300'000)); }, std::chrono::seconds(10));
    kill(last, SIGCONT);
    const std::string shown = dock.Output();
    EXPECT_GT(shown.rfind("boolean false"), shown.rfind("boolean true")) << shown;
}

TEST_F(Services, AScreenReaderReadsTheRowsAndStopsOne) {
    const std::string reader = OMBRIVEL_SCREEN_READER;
    if (!desktop.Serve({"/usr/libexec/at-spi-bus-launcher", "--launch-immediately"}).ExitCode())
        Await("the accessibility bus", [&] {
            return !desktop
                        .Run({"dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus", "/org/a11y/bus",
                              "org.a11y.Bus.GetAddress"})
                        .empty();
        });
    environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1";
    for (const char* const name : {"film.mov.001", "film.mov.002.download", "song.mp3.001", "song.mp3.002.download"})
        WriteFile(File(name), std::string(kMegabyte, 'x'));
    Program& program = Start({"film.mov.001", "song.mp3.001"});
    const std::string waits = "|Waiting for part "
                              "2 to be downloaded…|1 of 2|Stop\n";
    const std::string film = "list item|film.mov" + waits, song = "list item|song.mp3" + waits;
    const auto window = [](const std::string& count, const std::string& rows) {
        return "frame|Ombrivel||focused\npanel|Ombrivel|\nlist|" + count + "|\n" + rows + "label|" + count +
               "|\ntool bar|Ombrivel|\npush button|Glue Files||Press\npush button|Cut File||Press\n"
               "push button|Halvrick||Press\n";
    };
    const Process& listens = desktop.Serve({reader, "listen"});
    Await("its ears", [&] { return listens.Errors().ends_with("ready\n"); });
    const auto look = [&](const std::string& name) { return desktop.Run({reader, "look", name}); };
    Await("both rows", [&] { return look("Ombrivel") == window("2 operations running", film + song); });
    desktop.Run({reader, "press", "film.mov"});
    Await("its end", [&] { return listens.Output().find("a row has gone\n") != std::string::npos; });
    EXPECT_EQ(look("Ombrivel"), window("1 operation running", song));

    program.OpenMenus({"F10", "Right"});
    desktop.Press({"Up", "Return"});
    const std::string check = "check box|", toggle = "||Toggle";
    Await("the preferences", [&] {
        return look("Preferences") == "frame|Preferences|\npanel|Preferences|\n" + check +
                                          "Move the parts to the Trash after gluing" + toggle + "|focused\n" + check +
                                          "Open glued .zip and .rar archives" + toggle + "\n" + check +
                                          "Show finished files in the file manager" + toggle + "\n" + check +
                                          "Quit when the last operation is done" + toggle +
                                          "\nlabel|Only if Ombrivel was started by opening files.|\n" + check +
                                          "Check for a new version at startup" + toggle + "\n";
    });
    desktop.Press({"ctrl+w"});
    program.OpenMenus({"F10", "Left"});
    desktop.Press({"Up", "Return"});
    const std::string site = OMBRIVEL_VENDOR_SITE;
    Await("the link", [&] { return look("About Ombrivel").ends_with("\nlink|" + site + "||Press\n"); });
    desktop.Run({reader, "press", site});
    Await("the web site", [&] { return desktop.Opened() == Words{site}; });
    WriteFile(File("cat.mov"), "x");
    StartAgain({"cat.mov"});
    const std::string title = "Cut the file into parts";
    Await("the dialog", [&] {
        const std::string seen = look(title);
        return seen.starts_with("dialog|" + title + "|\npanel|" + title +
                                "|\ncombo box|Part size (MB): 100||ShowMenu|focused\n") &&
               seen.ends_with("\npush button|Cut||Press\npush button|Cancel||Press\n");
    });
    desktop.Press({"Escape"});
    WriteFile(File("song.mp3.003.download"), "x");
    FinishDownload("song.mp3");
    Await("the status", [&] {
        return listens.Output().find("song.mp3 Waiting for part "
                                     "3 to be downloaded…\n") != std::string::npos;
    });
    std::filesystem::remove(File("song.mp3.003.download"));
    WriteFile(File("song.mp3.003"), "x");
    EXPECT_EQ(program.End(), 0);
}
