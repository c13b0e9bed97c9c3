#include "tests/support/ProgramTest.h"

#include "framework/threads/MainThread.h"
#include "framework/windows/ComboBox.h"
#include "framework/windows/Native.h"
#include "settings/claPreferences.h"

#include <QTest>

#include <algorithm>

ProgramTest::ProgramTest() : setStatus_(List().SetStatus) {
    List().SetStatus = [this](const std::string& text) {
        setStatus_(text);
        for (const Ref<claFilePerformInfo>& row : std::vector(List().Info)) {
            if (std::find(rows.begin(), rows.end(), row) != rows.end())
                continue;
            rows.push_back(row);
            if (onRow)
                onRow(*row);
        }
    };
}

ProgramTest::~ProgramTest() {
    EXPECT_TRUE(WaitForWorkers()) << "a worker did not come to its end";
    while (!List().Info.empty())
        List().Info.back()->Close();
    for (const Ref<claFilePerformInfo>& row : rows)
        row->PerformThread = nullptr; // a worker that died holds its row
    List().SetStatus = setStatus_;
    App::Instance()->InUse.clear();
    App::Instance()->Preferences = New<claPreferences>();
    AskedOfDesktop();
    EmptyTrash();
}

void ProgramTest::WhenAsked(const std::function<void(winCut&)>& answer) {
    PostToMainThread([answer] { answer(*winCut::Instance()); });
}

void ProgramTest::Cut(const std::string& name, const std::string& size) const {
    WhenAsked([size](winCut& dialog) {
        dialog.comPartSize()->SetText(size);
        dialog.ActionButton->Push();
    });
    App::Instance()->EncodeFile(folder.Item(name));
}

void ProgramTest::ClickStop(int row) {
    QWidget* const list = winMain::Instance()->Native().content->childAt(1, 1);
    const QPoint button(list->width() - 22, 50 * row + 26);
    QTest::mouseMove(list, button);
    QTest::mouseClick(list, Qt::LeftButton, Qt::NoModifier, button);
}
