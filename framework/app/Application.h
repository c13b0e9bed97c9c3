#pragma once

#include "framework/base/Program.h"
#include "framework/base/Ref.h"
#include "framework/windows/MenuHandlers.h"

#include <functional>
#include <string>

class FolderItem;
class MenuBar;
class Picture;

// Base of the one application object. All events come on the main thread.
class Application : public Object {
public:
    static Ref<FolderItem> ExecutableFile();
    static std::string LongVersion();
    static std::string ShortVersion();
    // The menu bar in use; nil for none. Set before the first window is made.
    static Ref<::MenuBar> MenuBar();
    static void SetMenuBar(const Ref<::MenuBar>& bar);
    // The commands that the application takes, whichever window is in front.
    ::MenuHandlers& MenuHandlers() { return menuHandlers_; }
    // Has Qt's own texts (the open dialog, say) in the language of that code, "pt" or "zh_CN", and the characters of
    // all texts as that language writes them; empty for English.
    static void SpeakLanguage(const std::string& code);
    // The icon of all windows.
    static void SetIcon(const Ref<Picture>& icon);
    // Runs the call from the event loop, the next time that a window has come to the screen: for what a start need not
    // wait for. Main thread.
    static void AfterFirstPaint(std::function<void()> call);

    // Whether files, or a wish that the program come forward, have reached the process but none of the events below
    // yet. These come before any call that is posted to the main thread from now on. Main thread.
    static bool EventsWait();

    // The program has been set up and may begin. An exception that leaves this event ends the process with code 1.
    virtual void Event_Open() {}
    // The program was started without a file, or asked to come forward. Not if it was given files that are not there.
    // At the start it comes before Event_Open.
    virtual void Event_NewDocument() {}
    // A file was handed over: named at the start, or by a second start of the program. At the start these come before
    // Event_Open; later ones also while a modal dialog runs. The file may not be there, or not any more.
    virtual void Event_OpenDocument(const Ref<FolderItem>&) {}
    // The process is about to end. Qt may have gone already: no window is to be touched.
    virtual void Event_Close() {}
    // A menu is about to be shown.
    virtual void Event_EnableMenuItems() {}

private:
    ::MenuHandlers menuHandlers_;
};

// The life of a process: connects to the desktop, calls `startup`, which makes the application object, then serves
// events until Quit. The arguments are files to open; with another instance running they are handed to it instead.
// Returns 0 when an instance has taken the files over, and otherwise not at all: a start that fails says why and ends
// the process with 1.
int RunApplication(int argumentCount, char** arguments, const ProgramIdentity& identity,
                   const std::function<Ref<Application>()>& startup);

// Serves the events that are due. Main thread. With -1, which is all that the program asks for, it does not wait.
void DoEvents(int32_t milliseconds);

// Sixtieths of a second since some moment before. Any thread.
int32_t Ticks();

// Ends the program: asks every window, which may refuse; then the windows' and the application's Close events run, and
// the process ends at once. Workers are not waited for, and no program code runs after a Quit that was not refused.
// While a window is still asking about a close, a further Quit does nothing. Main thread.
void Quit(int exitCode);

// The two below are the framework's own.

// The application object of this process, nil before it is made. Main thread.
Ref<Application> RunningApplication();

// Runs the application's Close event and ends the process. Main thread; Qt may have gone.
[[noreturn]] void SaveAndEnd(int exitCode);
