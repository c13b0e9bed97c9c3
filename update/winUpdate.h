#pragma once

#include "ui/claDialogWindow.h"

#include <cstdint>
#include <string>

class CheckBox;
class FolderItem;
class Label;
class ProgressBar;
class TextArea;
class claTcpDownload;

// The dialog that offers a new version, downloads it into the user's Downloads folder, and opens the file and then the
// folder. Who shows it fills it beforehand. Its end, whichever it is, is the end of the download. Main thread.
class winUpdate : public claDialogWindow {
public:
    static Ref<winUpdate> Instance();

    std::string FileName;    // in the Downloads folder; a file of that name is overwritten
    std::string DownloadUrl; // where it comes from

    const Ref<ProgressBar>& proDownload() const { return proDownload_; }
    const Ref<Label>& StaticText1() const { return StaticText1_; }
    const Ref<claDialogButton>& pusDownload() const { return pusDownload_; }
    const Ref<claDialogButton>& pusCancel() const { return pusCancel_; }
    const Ref<CheckBox>& cheCheckAtStartup() const { return cheCheckAtStartup_; }
    const Ref<claTcpDownload>& tcpDownload() const { return tcpDownload_; }
    const Ref<TextArea>& txtMessage() const { return txtMessage_; }

    void Action(const Ref<claDialogButton>& button) override;

protected:
    WindowLayout Layout() override;
    void CreateControls() override;
    void Event_Open() override;
    void Event_ChangeButtonCaption() override;
    void Event_Close() override;

private:
    void CreateDownload();
    void CreateMessage();
    void StaticText1_Open();
    bool pusDownload_Action();
    bool pusCancel_Action();
    void cheCheckAtStartup_Open();
    void tcpDownload_DownloadComplete(int32_t status, const Ref<FolderItem>& file);
    void tcpDownload_ReceiveProgress(int32_t soFar, int32_t total);
    void tcpDownload_Error(int32_t code);

    Ref<ProgressBar> proDownload_;
    Ref<Label> StaticText1_;
    Ref<claDialogButton> pusDownload_;
    Ref<claDialogButton> pusCancel_;
    Ref<CheckBox> cheCheckAtStartup_;
    Ref<claTcpDownload> tcpDownload_;
    Ref<TextArea> txtMessage_;
};
