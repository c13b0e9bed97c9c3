// Paints every window, menu and dialog in one language side by side, for people to look at.
// usage: LANGUAGE=CODE ombrivel-sheet PICTURE TITLE

#include "core/App.h"
#include "engine/claThread.h"
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
#include "ui/claFilePerform.h"
#include "ui/claFilePerformInfo.h"
#include "ui/winAbout.h"
#include "ui/winCut.h"
#include "ui/winMain.h"
#include "update/winUpdate.h"

#include <QApplication>
#include <QEventLoop>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <vector>

namespace {

using Multilingual::GetString;

constexpr int kGap = 12;
constexpr int kTitle = 24;
constexpr std::chrono::milliseconds kSomeFrames{50}; // after which what was written to a control is seen on it

QPixmap PictureOf(const Ref<Window>& window) {
    window->Show();
    QEventLoop events;
    QTimer::singleShot(kSomeFrames, &events, &QEventLoop::quit);
    events.exec();
    return window->Native().widget->grab();
}

// Of the dialog that the call shows and waits for. It is left by its cancel button.
QPixmap PictureOfDialog(const std::function<void()>& ask) {
    QPixmap picture;
    QTimer::singleShot(kSomeFrames, [&picture] {
        QWidget* const dialog = QApplication::activeModalWidget();
        picture = dialog->grab();
        dialog->close();
    });
    ask();
    return picture;
}

void FillList() {
    claFilePerform& list = *winMain::Instance()->canPerform();
    list.AddInfo("film.mov", 40, 26, GetString("MainStatusCreatingPart", "3"), picIconCut(), New<claThread>());
    list.AddInfo("photos.zip", 40, 12, GetString("MainStatusAddingPart", "2"), picIconGlue(), New<claThread>());
    list.AddInfo("talk.mp3", 40, 33, GetString("MainStatusWaiting", "7"), picIconGlue(), New<claThread>());
}

// Every language by its own name.
void FillChooser(winChooseLanguage& chooser) {
    const Ref<FolderItem> folder = SpecialFolder::Resources()->Child("Multilingual");
    chooser.staMessage()->SetText(GetString("ChoosePlease"));
    chooser.ActionButton->SetCaption(GetString("ButtonOK"));
    chooser.CancelButton->SetCaption(GetString("ButtonQuit"));
    chooser.lstLanguage()->Change = nullptr; // the texts stay in this sheet's language
    for (int32_t i = 1; i <= folder->Count(); ++i) {
        Multilingual::LoadLanguageFile(folder->Item(i)->Child("strings.txt"));
        chooser.lstLanguage()->AddRow(GetString("ChooseString"));
    }
    chooser.lstLanguage()->Sort();
    chooser.lstLanguage()->SetListIndex(0);
}

// As an offer does.
void FillUpdate(TextArea& message) {
    message.SetSelBold(true);
    message.SetSelText("Ombrivel 1.1\n");
    message.SetSelBold(false);
    message.SetSelText(GetString("SearchForUpdatesVersion") + "\n");
    message.SetSelText(GetString("SearchForUpdatesFilename", "o.zip") + "\n");
}

// The main window and what it leads to, the opened menus first.
std::vector<QPixmap> MainPictures() {
    FillList();
    std::vector<QPixmap> pictures{PictureOf(winMain::Instance())};
    const QList<QAction*> menus = winMain::Instance()->Native().widget->menuBar()->actions();
    for (const QAction* const menu : menus) { // opened here it would be the window in front, which no command goes to
        menu->menu()->adjustSize();
        pictures.push_back(menu->menu()->grab());
    }
    pictures.push_back(PictureOfDialog([&menus] { menus.last()->menu()->actions().first()->trigger(); })); // the help
    pictures.push_back(PictureOfDialog([] { winMain::Instance()->Close(); })); // may it quit
    pictures.push_back(PictureOfDialog([] { App::Instance()->Error(GetString("SearchForUpdatesServerError")); }));
    return pictures;
}

std::vector<QPixmap> Pictures() {
    std::vector<QPixmap> pictures = MainPictures();
    const Ref<winCut> cut = winCut::Instance();
    cut->FileSize = 734003200;
    cut->UpdateStatus();
    FillUpdate(*winUpdate::Instance()->txtMessage());
    const Ref<winChooseLanguage> chooser = winChooseLanguage::Instance();
    for (const Ref<Window>& window : {Ref<Window>(cut), Ref<Window>(winPreferences::Instance()),
                                      Ref<Window>(winUpdate::Instance()), Ref<Window>(winAbout::Instance())})
        pictures.push_back(PictureOf(window));
    FillChooser(*chooser); // which changes the language
    pictures.push_back(PictureOf(chooser));
    return pictures;
}

// From the top downwards, then from left to right, no column higher than the first picture. Gives where each one goes,
// and how wide it all is.
std::vector<QPoint> Places(const std::vector<QPixmap>& pictures, int& width) {
    std::vector<QPoint> places;
    QPoint next(kGap, kTitle);
    width = 0;
    for (const QPixmap& picture : pictures) {
        if (next.y() > kTitle && next.y() + picture.height() > kTitle + pictures.front().height())
            next = QPoint(width, kTitle);
        places.push_back(next);
        next.ry() += picture.height() + kGap;
        width = std::max(width, next.x() + picture.width() + kGap);
    }
    return places;
}

// The pictures of one language with its name above.
QPixmap RowOf(const std::string& title) {
    const std::vector<QPixmap> pictures = Pictures();
    int width = 0;
    const std::vector<QPoint> places = Places(pictures, width);
    QPixmap row(width, pictures.front().height() + kTitle + kGap);
    row.fill(QColor(0xC8, 0xCF, 0xD6));
    QPainter painter(&row);
    painter.drawText(kGap, kTitle - 8, QString::fromStdString(title));
    for (std::size_t i = 0; i < pictures.size(); ++i)
        painter.drawPixmap(places[i], pictures[i]);
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
