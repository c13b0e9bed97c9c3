#pragma once

#include "framework/app/Application.h"

#include <string>
#include <vector>

class FolderItem;
class claPreferences;

// The application object: takes the files that enter, sends each to a cut or a glue, and holds what the whole run
// shares. Main thread.
class App : public Application {
public:
    // Makes the one instance, with its menu bar.
    static Ref<App> NewAppInstance();
    // Binds the menu commands below to their items. Once.
    void ApplicationAddMenuHandlers();
    static Ref<App> Instance();

    // The program may quit by itself once the last operation has closed. True until the program is asked to come up
    // without a file.
    bool QuitAfter = true;
    Ref<claPreferences> Preferences; // nil until Event_Open
    // One entry per running glue: the child of its folder that bears the bare base name. Walks over it do not yield:
    // they are short, and an event served in the middle could change it under them.
    std::vector<Ref<FolderItem>> InUse;

    void Event_Open() override;
    void Event_NewDocument() override;
    void Event_Close() override;
    void Event_OpenDocument(const Ref<FolderItem>& item) override;
    void Event_EnableMenuItems() override; // has no effect

    // The menu commands that work whichever window is in front. Each returns true: the command is handled.
    virtual bool EditPreferences_Action();
    virtual bool HelpAbout_Action();
    virtual bool HelpHelp_Action();
    virtual bool HelpSearchForUpdates_Action();

    // The one way into a glue and into a cut. See StartGlue and StartCut.
    virtual void DecodeFile(const Ref<FolderItem>& file);
    virtual void EncodeFile(const Ref<FolderItem>& file);

    // Quits, if the user wants that, when no operation is left of a run that opened files began. What is on its way
    // comes first; no row may come of it (a cut that is called off), so this is done again when it has gone.
    void QuitIfAllIsDone();

    // Shows an error dialog with that explanation.
    virtual void Error(const std::string& text);

    // Frees a series for the next glue. An item that is not in use changes nothing.
    virtual void RemoveInUse(const Ref<FolderItem>& item);

    // A part of a series goes to the glue, everything else to the cut. What is not there (any more) is logged to
    // standard error, and gives false.
    bool Route(const Ref<FolderItem>& item);

private:
    // Sends the files that came in before the start was finished on their way. False if none of them was there.
    bool ServeOpenFiles();

    std::vector<Ref<FolderItem>> OpenFiles; // handed over before the start was finished
    bool Started = false;
};

// What the desktop gets to know of the program.
ProgramIdentity OmbrivelIdentity();

// Sets up what must stand before the first event: registers the file types and makes the application object.
Ref<Application> Startup();
