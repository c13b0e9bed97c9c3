#include "framework/app/Application.h"

#include "framework/app/Activation.h"
#include "framework/app/EndRequests.h"
#include "framework/app/SessionBus.h"
#include "framework/app/StartFailure.h"
#include "framework/base/Immortal.h"
#include "framework/base/Program.h"
#include "framework/files/FolderItem.h"
#include "framework/threads/ExceptionBoundary.h"
#include "framework/threads/MainThread.h"
#include "framework/threads/MainThreadQueue.h"
#include "framework/windows/Accessibility.h"
#include "framework/windows/DocumentEvents.h"
#include "framework/windows/HeldKeys.h"
#include "framework/windows/LanguageFont.h"
#include "framework/windows/MenuBar.h"
#include "framework/windows/MenuCommands.h"
#include "framework/windows/NativeGraphics.h"
#include "framework/windows/NativeStyle.h"
#include "framework/windows/WindowList.h"

#include <QApplication>
#include <QEvent>
#include <QLibraryInfo>
#include <QLocale>
#include <QSocketNotifier>
#include <QThreadPool>
#include <QTranslator>

#include <fontconfig/fontconfig.h>

#include <chrono>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace {

// How long the main thread may take to save when another thread ends the process.
constexpr std::chrono::seconds kSavesWithin{2};

const Immortal<Ref<Application>> application;
const Immortal<Ref<MenuBar>> menuBar;
bool quitting = false;

[[noreturn]] void EndProcess(int exitCode) {
    std::_Exit(exitCode); // workers may be anywhere: nothing is taken down around them
}

// Qt and the libraries beneath it call `exit` where the display or the session manager has gone. Nothing here may touch
// Qt, of which any part may be gone as well.
void EndAtExit(int exitCode, void*) {
    if (!IsMainThread()) { // which owns what is to be saved
        PostToMainThread([exitCode] { SaveAndEnd(exitCode); });
        std::this_thread::sleep_for(kSavesWithin);
        EndProcess(exitCode);
    }
    SaveAndEnd(exitCode);
}

void DescribeToToolkit() {
    QApplication::setApplicationName(QString::fromStdString(ThisProgram().Name));
    QApplication::setApplicationVersion(QString::fromStdString(ThisProgram().LongVersion));
    QApplication::setDesktopFileName(QString::fromStdString(ThisProgram().Id));
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setStyle(new NativeStyle);
    AnswerEndOfSession();
}

// The font library reads its settings on a thread of its own while Qt connects to the desktop. Whoever asks for a font
// before it is done would read them all once more.
class FontPreload {
public:
    void Await() { thread_.join(); }

private:
    std::jthread thread_{[] { FcInit(); }};
};

// Waits for the first window to come to the screen; the paint that follows goes before the call.
class AfterFirstExpose : public QObject {
public:
    explicit AfterFirstExpose(std::function<void()> call) : QObject(QApplication::instance()), call_(std::move(call)) {
        parent()->installEventFilter(this);
    }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Expose && call_) {
            PostToMainThread(std::exchange(call_, nullptr));
            deleteLater();
        }
        return false;
    }

private:
    std::function<void()> call_;
};

// Qt gives parts of its work on pictures to threads and waits for them: for ever, where the system has none to give. So
// one is there from the start, and stays, and there is never another.
void KeepThreadForPainting() {
    QThreadPool& threads = *QThreadPool::globalInstance();
    threads.setMaxThreadCount(1);
    threads.setExpiryTimeout(-1);
    threads.start([] {});
}

void ListenToQueue() {
    MainThreadQueue& queue = MainThreadQueue::Instance();
    auto* const notifier = new QSocketNotifier(queue.Doorbell(), QSocketNotifier::Read, QApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [&queue] { queue.Serve(); });
}

// The one word with which the session bus starts the program. What is to be done comes over the bus, so this is no
// start without a file: it may yet be one that opens files.
constexpr std::string_view kAsService = "--service";

// The files named on the command line, there or not; nothing if it names none.
std::optional<std::vector<std::string>> FilesToOpen(int count, char** words) {
    if (count <= 1)
        return std::nullopt;
    if (count == 2 && words[1] == kAsService)
        return std::vector<std::string>();
    std::vector<std::string> paths;
    for (int i = 1; i < count; ++i)
        paths.push_back(FolderItem(words[i]).AbsolutePath());
    return paths;
}

// Files come in before Event_Open, which serves them when the windows are there and may find that nothing is to be
// done.
void Begin(const std::optional<std::vector<std::string>>& paths, const std::function<Ref<Application>()>& startup) {
    try {
        *application = startup();
        FollowTheWindowInFront();
        if (!paths)
            (*application)->Event_NewDocument();
        for (const std::string& path : paths.value_or(std::vector<std::string>()))
            (*application)->Event_OpenDocument(New<FolderItem>(path));
        (*application)->Event_Open();
    } catch (const std::exception& failure) {
        StopServing(ThisProgram().Id);
        FailStart(failure.what());
    }
}

} // namespace

Ref<Application> RunningApplication() {
    return *application;
}

void SaveAndEnd(int exitCode) {
    ExceptionBoundary::Run("quit", [] {
        if (!application->IsNil())
            (*application)->Event_Close();
    });
    EndProcess(exitCode);
}

Ref<FolderItem> Application::ExecutableFile() {
    return New<FolderItem>(ProgramFilePath());
}

std::string Application::LongVersion() {
    return ThisProgram().LongVersion;
}

std::string Application::ShortVersion() {
    return ThisProgram().ShortVersion;
}

Ref<MenuBar> Application::MenuBar() {
    return *menuBar;
}

void Application::SetMenuBar(const Ref<::MenuBar>& bar) {
    *menuBar = bar;
}

void Application::SpeakLanguage(const std::string& code) {
    static const Immortal<QTranslator> translator;
    QApplication::removeTranslator(&*translator);
    if (translator->load(QLocale(QString::fromStdString(code)), QStringLiteral("qtbase"), QStringLiteral("_"),
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&*translator);
    UseFontOfLanguage(code);
}

void Application::SetIcon(const Ref<Picture>& icon) {
    if (!icon.IsNil())
        QApplication::setWindowIcon(IconOf(icon));
}

void Application::AfterFirstPaint(std::function<void()> call) {
    new AfterFirstExpose(std::move(call)); // goes when it has come
}

bool Application::EventsWait() {
    return DocumentEvents::Instance().Wait();
}

int RunApplication(int argumentCount, char** arguments, const ProgramIdentity& identity,
                   const std::function<Ref<Application>()>& startup) {
    SetThisProgram(identity);
    const Activation activation = Activation::OfThisStart();
    FontPreload fontPreload;
    BeginToConnect();
    const QApplication toolkit(argumentCount, arguments); // takes its own options out
    EndToConnect();
    DescribeToToolkit();
    const auto paths = FilesToOpen(argumentCount, arguments);
    fontPreload.Await(); // from here on, too, the environment may be changed
    switch (HandOver(identity.Id, paths, activation)) {
    case HandedOver::Yes:
        EndBusyPointer(activation);
        return 0;
    case HandedOver::Unanswered:
        FailStart("it is running already, but does not answer");
    case HandedOver::No:
        break;
    }
    on_exit(EndAtExit, nullptr);
    ListenToEndSignals([] { SaveAndEnd(0); });
    ListenToQueue();
    IgnoreHeldKeys();
    DescribeToScreenReaders();
    KeepThreadForPainting();
    Begin(paths, startup);
    QApplication::exec();
    SaveAndEnd(0);
}

void DoEvents(int32_t milliseconds) {
    if (milliseconds < 0)
        QCoreApplication::processEvents();
    else
        QCoreApplication::processEvents(QEventLoop::AllEvents, milliseconds);
}

int32_t Ticks() {
    using Sixtieths = std::chrono::duration<int64_t, std::ratio<1, 60>>;
    static const auto start = std::chrono::steady_clock::now();
    return static_cast<int32_t>(
        std::chrono::duration_cast<Sixtieths>(std::chrono::steady_clock::now() - start).count());
}

void Quit(int exitCode) {
    if (quitting || WindowList::AnyIsAsking())
        return;
    quitting = true;
    if (WindowList::Refuse()) {
        quitting = false;
        return;
    }
    WindowList::Close();
    SaveAndEnd(exitCode);
}
