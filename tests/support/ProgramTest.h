#pragma once

#include "core/App.h"
#include "framework/windows/Label.h"
#include "tests/support/TestFolder.h"
#include "tests/support/Waiting.h"
#include "ui/claFilePerform.h"
#include "ui/claFilePerformInfo.h"
#include "ui/winCut.h"
#include "ui/winMain.h"

#include <gtest/gtest.h>

#include <QPoint>

#include <functional>

// A test that works with the program's list of operations. It leaves the list empty and the preferences at their
// defaults, whatever became of its workers.
class ProgramTest : public testing::Test {
protected:
    ProgramTest();
    ~ProgramTest() override;

    const TestFolder folder;
    // Every row of this test in the order of their coming. While onRow runs, the row's worker waits.
    std::vector<Ref<claFilePerformInfo>> rows;
    std::function<void(claFilePerformInfo&)> onRow;

    static claFilePerform& List() { return *winMain::Instance()->canPerform(); }
    static std::string StatusText() { return winMain::Instance()->staStatus()->Text(); }

    // What the user does in the next cut dialog.
    static void WhenAsked(const std::function<void(winCut&)>& answer);
    void Cut(const std::string& name, const std::string& size) const;
    void Glue(const std::string& name) const { App::Instance()->DecodeFile(folder.Item(name)); }
    // The middle of a row's stop button, in the list.
    static QPoint StopButton(int row);
    // Clicks on the stop button of a row with a real pointer.
    static void ClickStop(int row);

private:
    const std::function<void(const std::string&)> setStatus_; // the window's own
};
