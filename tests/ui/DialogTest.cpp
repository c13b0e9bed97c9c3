#include "framework/threads/MainThread.h"
#include "framework/windows/Native.h"
#include "ui/claDialogButton.h"
#include "ui/claDialogWindow.h"

#include <gtest/gtest.h>

namespace {

class TestDialog : public claDialogWindow {
public:
    static Ref<TestDialog> Open(bool withAction = true) {
        const auto dialog = New<TestDialog>();
        dialog->withAction_ = withAction;
        dialog->Make();
        return dialog;
    }

    const Ref<claDialogButton> action = New<claDialogButton>();
    const Ref<claDialogButton> cancel = New<claDialogButton>();

    // Runs the dialog; the steps are taken while it is up.
    Ref<claDialogButton> RunWith(const std::function<void()>& steps) {
        PostToMainThread(steps);
        return ShowModal();
    }

    Ref<claDialogButton> RunToTheCloseBox() {
        return RunWith([this] { Native().widget->close(); });
    }

protected:
    void CreateControls() override {
        Add(action, {.Left = 200, .Top = 50, .Width = 80, .Height = 20});
        Add(cancel, {.Left = 100, .Top = 50, .Width = 80, .Height = 20});
    }

    void Event_DialogOpen() override {
        if (withAction_)
            ActionButton = action;
        CancelButton = cancel;
        action->SetCaption("lost");
    }

    void Event_ChangeButtonCaption() override { cancel->SetCaption("No " + cancel->Caption()); }

private:
    bool withAction_ = true;
};

TEST(Dialog, GivesTheButtonThatEndedItOrThatOfAnEarlierRun) {
    const Ref<TestDialog> dialog = TestDialog::Open();
    EXPECT_EQ(dialog->RunWith([&] { dialog->cancel->Push(); }), dialog->cancel);
    EXPECT_FALSE(dialog->Closed()) << "it is hidden only: its controls can still be read";
    EXPECT_FALSE(dialog->Native().widget->isVisible());
    int vetoes = 0;
    dialog->action->Action = [&vetoes] { return ++vetoes < 3; };
    const auto ended = dialog->RunWith([&] {
        dialog->action->Push();
        dialog->action->Push();
        EXPECT_TRUE(dialog->Native().widget->isVisible()) << "the handler has taken over";
        dialog->action->Push();
    });
    EXPECT_EQ(ended, dialog->action);
    EXPECT_EQ(dialog->RunToTheCloseBox(), dialog->action);
    EXPECT_TRUE(dialog->Closed());
    EXPECT_TRUE(TestDialog::Open()->RunToTheCloseBox().IsNil());
}

TEST(Dialog, StandardCaptionsComeBetweenTheTwoEvents) {
    const Ref<TestDialog> dialog = TestDialog::Open();
    EXPECT_EQ(dialog->action->Caption() + ", " + dialog->cancel->Caption(), "OK, No Cancel");
    EXPECT_GT(dialog->action->Left(), dialog->cancel->Left());
    dialog->Close();
    const Ref<TestDialog> half = TestDialog::Open(false);
    EXPECT_EQ(half->action->Caption() + ", " + half->cancel->Caption(), "lost, No Cancel");
    EXPECT_THROW(half->action->Push(), NilObjectException) << "it reports to nobody";
    EXPECT_EQ(half->RunWith([&] { half->cancel->Push(); }), half->cancel);
    half->Close();
}

} // namespace
