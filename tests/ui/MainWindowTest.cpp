#include "engine/FileTypes.h"
#include "engine/PendingOperation.h"
#include "engine/claThread.h"
#include "framework/app/Application.h"
#include "framework/files/FileType.h"
#include "framework/files/SpecialFolder.h"
#include "framework/text/Text.h"
#include "framework/windows/MenuBar.h"
#include "framework/windows/Native.h"
#include "framework/windows/NativeGraphics.h"
#include "framework/windows/NativeMenu.h"
#include "settings/Multilingual.h"
#include "settings/winPreferences.h"
#include "tests/support/ProgramTest.h"
#include "ui/MainMenu.h"
#include "ui/Pictures.h"
#include "ui/winAbout.h"
#include "ui/winMain.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDropEvent>
#include <QFileDialog>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolBar>

namespace {

class MainWindow : public ProgramTest {
protected:
    MainWindow() {
        QIcon::setThemeSearchPaths({}); // no desktop's own signs
        QApplication::setActiveWindow(&main);
    }

    static QWidget* Above() {
        for (QWidget* const window : QApplication::topLevelWidgets()) {
            if (window->isVisible() && window != winMain::Instance()->Native().widget)
                return window;
        }
        return nullptr;
    }

    // A message by its sign's colour, its texts and its buttons; of all else the title.
    static QString Description(const QWidget& window) {
        const auto* const message = qobject_cast<const QDialog*>(&window);
        if (message == nullptr)
            return window.accessibleName() + window.windowTitle().trimmed();
        const QImage sign = message->findChild<QLabel*>()->pixmap().toImage();
        QString told = sign.pixelColor(24, 5).name();
        for (const auto* const button : message->findChildren<QPushButton*>())
            told += button->isVisible() ? " [" + button->text() + "]" : "";
        return told + ' ' + message->accessibleName() + '\n' + message->accessibleDescription();
    }

    // What comes up of it, and after that what the desktop is asked. Of files the first part is picked; all
    // else is cancelled.
    std::string Led(const std::function<void()>& act) const {
        folder.Write("film.mov.001", "x");
        std::string told;
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, [&] {
            QWidget* const above = Above();
            if (auto* const files = qobject_cast<QFileDialog*>(above)) {
                told += files->nameFilters().join('+').section(" (", 0, 0).toStdString() + " > ";
                files->selectFile(QString::fromStdString(folder.Path("film.mov.001")));
                static_cast<QDialog*>(files)->accept();
            } else if (above != nullptr) {
                told += Description(*above).toStdString();
                above->close();
            }
        });
        look.start(1);
        act();
        std::string asked;
        EXPECT_TRUE(WaitUntil([&] {
            asked += AskedOfDesktop();
            return Above() == nullptr && !PendingOperation::Any() && !(told + asked).empty();
        }));
        EXPECT_TRUE(WaitForWorkers());
        told += ReplaceAll(asked + AskedOfDesktop(), folder.Path() + "/", "");
        return told + (told.ends_with('\n') ? "" : "\n");
    }

    std::string Led(QAction& command) const {
        QApplication::setActiveWindow(&main);
        Application::MenuBar()->UpdateEnabled();
        const QString name = command.text() + " [" + command.shortcut().toString() + "]: ";
        return name.toStdString() + (command.isEnabled() ? Led([&command] { command.trigger(); }) : "off\n");
    }

    WindowWidget& main = *winMain::Instance()->Native().widget;
    const QToolBar& tools = *main.findChild<QToolBar*>();
};

TEST_F(MainWindow, EveryCommandAndToolDoesItsOwnWork) {
    List().AddInfo("film", 1, 0, "", picIconCut(), New<claThread>()); // or an end would be one
    std::string told;
    for (const QAction* const menu : main.menuBar()->actions()) {
        for (QAction* const item : menu->menu()->actions())
            told += item->isSeparator() ? "-\n" : Led(*item);
    }
    for (QAction* const tool : tools.actions())
        told += tool->text().isEmpty() ? "-\n" : Led(*tool);
    EXPECT_EQ(told, R"(Close Window [Ctrl+W]: #e88a1a [Quit] [Cancel] Operations are still running. Quit anyway?
If you quit now, the running operations are stopped. Unfinished files stay as they are.
-
Glue Files… [Ctrl+O]: Ombrivel Part > reveal film.mov
Cut File… [Ctrl+Shift+O]: All Files > Cut the file into parts
-
Quit Ombrivel [Ctrl+Q]: #e88a1a [Quit] [Cancel] Operations are still running. Quit anyway?
If you quit now, the running operations are stopped. Unfinished files stay as they are.
Cut [Ctrl+X]: off
Copy [Ctrl+C]: off
Paste [Ctrl+V]: off
Delete []: off
-
Select All [Ctrl+A]: off
-
Preferences… []: Preferences
Ombrivel Help [Ctrl+?]: #148a92 [OK] There is no help for Ombrivel.
To cut a file into parts, drop it on the window. To glue the file back together, drop one of its parts on the window.
Check for Updates… []: #d63c3c [OK] An error has occurred.
The server could not be reached (error 100).
-
About Ombrivel []: About Ombrivel
-
Glue Files []: Ombrivel Part > reveal film 1.mov
Cut File []: All Files > Cut the file into parts
-
Halvrick []: url )" OMBRIVEL_VENDOR_SITE "\n");
    for (const auto& [tool, icon] : {std::pair(0, picIconGlue()), {1, picIconCut()}, {3, picIconUrl()}}) {
        const QPixmap expected = QPixmap::fromImage(icon->Native().Composed(1));
        EXPECT_EQ(tools.actions().at(tool)->icon().pixmap(QSize(32, 32), 1).toImage(), expected.toImage()) << tool;
    }
}

TEST_F(MainWindow, ADropIsServedFileByFileOnceTheDragIsOver) {
    QByteArray addresses;
    for (const std::string name : {"letter.txt", "film.mov.001", "song.flac"}) {
        folder.Write(name, name);
        addresses += "file://" + QByteArray::fromStdString(folder.Path(name)) + "\r\n";
    }
    QMimeData files;
    files.setData(QStringLiteral("text/uri-list"), addresses);
    const auto isTaken = [](auto event) {
        event.ignore();
        QApplication::sendEvent(winMain::Instance()->Native().content->childAt(1, 1), &event);
        return event.isAccepted() && event.dropAction() == Qt::CopyAction;
    };
    const Qt::DropActions actions = Qt::MoveAction | Qt::CopyAction;
    const std::string told = Led([&] {
        EXPECT_TRUE(isTaken(QDragEnterEvent({}, actions, &files, Qt::LeftButton, Qt::NoModifier)));
        EXPECT_TRUE(isTaken(QDragMoveEvent({}, actions, &files, Qt::LeftButton, Qt::NoModifier)));
        EXPECT_TRUE(isTaken(QDropEvent({}, actions, &files, Qt::NoButton, Qt::NoModifier)));
        EXPECT_EQ(Above(), nullptr) << "the program from which the files come waits for this";
    });
    EXPECT_EQ(told, "Cut the file into partsCut the file into partsreveal film.mov\n");
    winCut::Instance()->ShowWithin(winMain::Instance(), -1);
    EXPECT_FALSE(isTaken(QDragEnterEvent({}, actions, &files, Qt::LeftButton, Qt::NoModifier)));
    winCut::Instance()->Close();
}

TEST_F(MainWindow, CommandsGoToTheWindowInFrontAndToItsField) {
    const auto press = [](QWidget& window, Qt::Key key) {
        QApplication::setActiveWindow(&window);
        QTest::keyClick(&window, key, Qt::ControlModifier);
    };
    for (const Ref<Window>& window : {Ref<Window>(winPreferences::Instance()), Ref<Window>(winAbout::Instance())}) {
        window->Show();
        press(*window->Native().widget, Qt::Key_O);
        EXPECT_FALSE(FileGlueFiles()->Enabled());
        press(*window->Native().widget, Qt::Key_W);
        EXPECT_TRUE(window->Closed());
    }
    EXPECT_FALSE(winMain::Instance()->Closed());

    const Ref<winCut> dialog = winCut::Instance();
    dialog->ShowWithin(winMain::Instance(), -1);
    auto* const box = dialog->Native().widget->findChild<QComboBox*>();
    EXPECT_TRUE(WaitUntil([box] { return QApplication::focusWidget() == box; }));
    EXPECT_FALSE(FileGlueFiles()->Enabled() || FileQuit()->Enabled());
    const std::pair<Ref<MenuItem>, const char*> edits[] = {{EditCopy(), "100/100/100"},
                                                           {EditCut(), "//100"},
                                                           {EditPaste(), "100//100"},
                                                           {EditPaste(), "100100//100"},
                                                           {EditSelectAll(), "100100/100100/100"},
                                                           {EditClear(), "//100"}};
    for (const auto& [item, expected] : edits) {
        EXPECT_TRUE(item->Enabled());
        item->Native().action.trigger();
        const QStringList found{box->currentText(), box->lineEdit()->selectedText(), QApplication::clipboard()->text()};
        EXPECT_EQ(found.join('/').toStdString(), expected) << item->Text();
    }
    dialog->Close();
}

TEST_F(MainWindow, AMenuLeftByEscapeGivesTheFocusBack) {
    for (QWidget* const focused : {tools.widgetForAction(tools.actions().constLast()), main.window()}) {
        focused->setFocus();
        if (focused == &main)
            main.clearFocus();
        QWidget* const before = QApplication::focusWidget();
        QTest::keyClick(&main, Qt::Key_F10);
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
        EXPECT_EQ(QApplication::focusWidget(), before);
    }
}

TEST_F(MainWindow, TabGoesAroundInEachWindowAndMeetsNothingNameless) {
    winCut::Instance()->ShowWithin(winMain::Instance(), -1);
    const QString site = OMBRIVEL_VENDOR_SITE;
    const std::pair<Ref<Window>, QStringList> windows[] = {
        {winCut::Instance(), {"100", "Cancel"}},
        {winPreferences::Instance(),
         {"Show finished files in the file manager", "Quit when the last operation is done",
          "Check for a new version at startup", "Move the parts to the Trash after gluing",
          "Open glued .zip and .rar archives"}},
        {winAbout::Instance(), {site}},
        {winMain::Instance(), {"Cut File", "Halvrick", "Glue Files"}}};
    for (const auto& [window, expected] : windows) {
        QWidget* const widget = window->Native().widget;
        window->Show();
        QApplication::setActiveWindow(widget);
        QTest::keyClick(widget, Qt::Key_Tab);
        QStringList met;
        const QWidget* const first = QApplication::focusWidget();
        do {
            QTest::keyClick(widget, Qt::Key_Tab);
            QWidget* const focused = QApplication::focusWidget();
            ASSERT_TRUE(focused != nullptr && focused->isVisible() && focused->window() == widget);
            met << QAccessible::queryAccessibleInterface(focused)->text(QAccessible::Name);
        } while (QApplication::focusWidget() != first && met.size() < 40);
        EXPECT_EQ(met, expected) << met.join(", ").toStdString();
        if (window != winMain::Instance())
            window->Close();
    }
}

TEST_F(MainWindow, MenusHaveTheirMnemonicsAndNoTextThatTheLanguageLacks) {
    const Ref<FolderItem> languages = SpecialFolder::Resources()->Child("Multilingual");
    const std::pair<const char*, const char*> mnemonics[] = {{"French", "&Fichier É&dition &Aide "},
                                                             {"Polish", "&Plik &Edycja P&omoc "},
                                                             {"Japanese", "ファイル 編集 ヘルプ "},
                                                             {"English", "&File &Edit &Help "}};
    for (const auto& [language, expected] : mnemonics) {
        Multilingual::Initialize(languages, language);
        std::string titles;
        for (const QAction* const menu : main.menuBar()->actions())
            titles += menu->text().toStdString() + " ";
        EXPECT_EQ(titles, expected);
    }
    folder.Write("strings.txt", "MenuFile: File\n");
    Multilingual::LoadLanguageFile(folder.Item("strings.txt"));
    Multilingual::LocalizeMenu();
    EXPECT_EQ(FileMenu()->Text() + EditCut()->Text(), "File");
    Multilingual::Initialize(languages, "English");
}

TEST_F(MainWindow, TheGlueDialogShowsWhatIsAPartByItsNameOrItsCode) {
    for (const char* const name : {"film.mov.001", "film.mov.051", "film.mov.052", "notes.txt"})
        folder.Write(name, "x");
    folder.Item("film.mov.051")->SetMacType(FileTypes::OmbrivelPart()->MacType);
    const QStringList parts{"film.mov.001", "film.mov.051"};
    QStringList shown;
    QTimer look;
    const auto begin = std::chrono::steady_clock::now();
    QObject::connect(&look, &QTimer::timeout, [&] {
        auto* const files = qobject_cast<QFileDialog*>(Above());
        if (files == nullptr)
            return;
        files->setDirectory(QString::fromStdString(folder.Path()));
        const auto* const view = files->findChild<QListView*>("listView");
        shown.clear();
        for (int i = 0; i < view->model()->rowCount(view->rootIndex()); ++i)
            shown << view->model()->index(i, 0, view->rootIndex()).data().toString();
        if (shown == parts || std::chrono::steady_clock::now() - begin > std::chrono::seconds(10))
            files->reject();
    });
    look.start(5);
    winMain::Instance()->Glue();
    EXPECT_EQ(shown, parts);
}

} // namespace
