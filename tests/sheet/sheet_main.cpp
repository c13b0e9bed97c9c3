// Paints every window in one language side by side, for people to look at.
// usage: LANGUAGE=CODE ombrivel-sheet PICTURE TITLE

#include "core/App.h"
#include "core/Startup.h"
#include "framework/files/FolderItem.h"
#include "framework/files/SpecialFolder.h"
#include "framework/threads/MainThread.h"
#include "framework/windows/Label.h"
#include "framework/windows/Listbox.h"
#include "framework/windows/Native.h"
#include "framework/windows/ProgressBar.h"
#include "framework/windows/TextArea.h"
#include "settings/Multilingual.h"
#include "settings/winChooseLanguage.h"
#include "settings/winPreferences.h"
#include "ui/Pictures.h"
#include "ui/claDialogButton.h"
#include "ui/claFilePerform.h"
#include "ui/claFilePerformInfo.h"
#include "ui/winAbout.h"
#include "ui/winCut.h"
#include "ui/winMain.h"
#include "update/winUpdate.h"

#include <QApplication>
#include <QEventLoop>
#include <QPainter>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <vector>

namespace {

constexpr int kGap = 12;
constexpr int kTitle = 24;
constexpr std::chrono::milliseconds kSomeFrames{50}; // after which what was written to a control is seen on it

QPixmap PictureOf(const Ref<Window>& window) {
    window->Show();
    QEventLoop events;
    QTimer::singleShot(kSomeFrames, &events, &QEventLoop::quit);
    events.exec();
    const QPixmap picture = NativeWindow::Of(*window).widget->grab();
    window->Hide();
    return picture;
}

void FillList() {
    claFilePerform& list = *winMain::Instance()->canPerform();
    using Multilingual::GetString;
    list.AddInfo("film.mov", 40, 26, GetString("MainStatusCreatingPart", "3"), picIconCut(), nullptr);
    list.AddInfo("photos.zip", 40, 12, GetString("MainStatusAddingPart", "2"), picIconGlue(), nullptr);
    list.AddInfo("talk.mp3", 40, 33, GetString("MainStatusWaiting", "7"), picIconGlue(), nullptr);
}

// Every language by its own name.
void FillChooser(winChooseLanguage& chooser) {
    const Ref<FolderItem> folder = SpecialFolder::Resources()->Child("Multilingual");
    chooser.staMessage()->SetText(Multilingual::GetString("ChoosePlease"));
    chooser.ActionButton->SetCaption(Multilingual::GetString("ButtonOK"));
    chooser.CancelButton->SetCaption(Multilingual::GetString("ButtonQuit"));
    chooser.lstLanguage()->Change = nullptr; // the texts stay in this sheet's language
    for (int32_t i = 1; i <= folder->Count(); ++i) {
        Multilingual::LoadLanguageFile(folder->Item(i)->Child("strings.txt"));
        chooser.lstLanguage()->AddRow(Multilingual::GetString("ChooseString"));
    }
    chooser.lstLanguage()->Sort();
    chooser.lstLanguage()->SetListIndex(0);
}

void FillUpdate(const winUpdate& window) {
    const std::string file = "Ombrivel-1.1.tar.gz";
    window.txtMessage()->SetSelBold(true);
    window.txtMessage()->SetSelText("Ombrivel 1.1\n");
    window.txtMessage()->SetSelBold(false);
    window.txtMessage()->SetSelText(Multilingual::GetString("SearchForUpdatesVersion") + "\n" +
                                    Multilingual::GetString("SearchForUpdatesFilename", file));
}

std::vector<QPixmap> Windows() {
    FillList();
    const Ref<winCut> cut = winCut::Instance();
    cut->FileSize = 734003200;
    cut->UpdateStatus();
    FillUpdate(*winUpdate::Instance());
    const Ref<winChooseLanguage> chooser = winChooseLanguage::Instance();
    std::vector<QPixmap> pictures;
    for (const Ref<Window>& window :
         {Ref<Window>(winMain::Instance()), Ref<Window>(cut), Ref<Window>(winPreferences::Instance()),
          Ref<Window>(winAbout::Instance()), Ref<Window>(winUpdate::Instance())})
        pictures.push_back(PictureOf(window));
    FillChooser(*chooser); // which changes the language
    pictures.push_back(PictureOf(chooser));
    return pictures;
}

// One row of pictures with the language's name above.
QPixmap RowOf(const std::string& title) {
    const std::vector<QPixmap> pictures = Windows();
    int width = kGap;
    int height = 0;
    for (const QPixmap& picture : pictures) {
        width += picture.width() + kGap;
        height = std::max(height, picture.height());
    }
    QPixmap row(width, height + kTitle + kGap);
    row.fill(QColor(0xC8, 0xCF, 0xD6));
    QPainter painter(&row);
    painter.drawText(kGap, kTitle - 8, QString::fromStdString(title));
    int x = kGap;
    for (const QPixmap& picture : pictures) {
        painter.drawPixmap(x, kTitle, picture);
        x += picture.width() + kGap;
    }
    return row;
}

} // namespace

int main(int count, char** words) {
    if (count != 3)
        return 2;
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    PostToMainThread([words] {
        const bool saved = RowOf(words[2]).save(QString::fromLocal8Bit(words[1]));
        std::_Exit(saved ? 0 : 1);
    });
    return RunApplication(1, words, OmbrivelIdentity(), Startup);
}
