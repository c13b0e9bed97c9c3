#include "ui/claFilePerformInfo.h"

#include "core/App.h"
#include "framework/files/FolderItem.h"
#include "framework/text/Number.h"
#include "framework/threads/MainThread.h"
#include "framework/windows/ProgressBar.h"
#include "settings/Multilingual.h"
#include "settings/claPreferences.h"
#include "ui/ShowFileInFinder.h"
#include "ui/claFilePerform.h"

namespace {

// Runs the whole list down, the match or not, from the last row to the first.
void TakeOut(std::vector<Ref<claFilePerformInfo>>& rows, const Ref<claFilePerformInfo>& row) {
    for (std::size_t i = rows.size(); i-- > 0;) {
        if (rows[i] == row) {
            rows[i]->Bar->Close();
            rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(i));
        }
    }
}

} // namespace

void claFilePerformInfo::SetStatus(const char* key, int32_t part) {
    {
        const std::lock_guard lock(mutex_);
        statusKey_ = key;
        statusPart_ = part;
    }
    if (!IsMainThread()) {
        RequestUpdate();
        return;
    }
    UpdateScreen();
    Bar->Refresh(true); // which has what shows through it repainted
}

void claFilePerformInfo::UpdateScreen() {
    const std::lock_guard lock(mutex_);
    if (statusKey_ != nullptr)
        Status = Multilingual::GetString(statusKey_, Str(statusPart_));
}

void claFilePerformInfo::Update() {
    Parent->Refresh(true);
}

void claFilePerformInfo::Close() {
    UpdateScreen(); // with the last status, even of a worker that was quick
    TakeOut(Parent->Info, Self(this));
    Parent->UpdateStatus();
    const Ref<App> app = App::Instance();
    if (app->Preferences->ShowFilesAfter && !FileToShow.IsNil())
        ShowFileInFinder({FileToShow->AbsolutePath()});
    app->QuitIfAllIsDone();
}
