#include "tests/support/ProgramTest.h"

#include "framework/threads/MainThread.h"
#include "framework/windows/ComboBox.h"
#include "framework/windows/Native.h"
#include "settings/claPreferences.h"
#include "ui/RowGeometry.h"

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

QPoint ProgramTest::StopButton(int row) {
    using namespace RowGeometry;
    return {List().Width() - kStopFromRight + kStopSize / 2, TopOf(row) + kStopTop + kStopSize / 2};
}

void ProgramTest::ClickStop(int row) {
    QWidget* const list = winMain::Instance()->Native().content->childAt(1, 1);
    QTest::mouseMove(list, StopButton(row));
    QTest::mouseClick(list, Qt::LeftButton, Qt::NoModifier, StopButton(row));
}
