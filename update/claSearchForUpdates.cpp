#include "update/claSearchForUpdates.h"

#include "core/Addresses.h"
#include "core/App.h"
#include "framework/desktop/Sound.h"
#include "framework/text/Number.h"
#include "framework/text/Text.h"
#include "framework/threads/Yield.h"
#include "framework/windows/CheckBox.h"
#include "framework/windows/MessageDialog.h"
#include "framework/windows/TextArea.h"
#include "settings/Multilingual.h"
#include "settings/claPreferences.h"
#include "ui/Sounds.h"
#include "update/winUpdate.h"

#include <string_view>

namespace {

using Multilingual::GetString;

constexpr int32_t kFound = 200; // status of a reply that is what was asked for

// Of a line in bytes: more is no name of a file or text, and no screen shows it. A server may send many megabytes.
constexpr std::size_t kMostOfLine = std::size_t(64) * 1024;

void TellThatNothingIsNew() {
    const auto dialog = New<MessageDialog>();
    dialog->ActionButton->Caption = GetString("ButtonOK");
    dialog->Message = GetString("SearchForUpdatesNoNewVersion");
    dialog->ShowModal();
}

// Serves events meanwhile.
std::string WithMacintoshLineEndings(std::string_view body) {
    constexpr std::size_t kPiece = std::size_t(1) << 20;
    std::string text;
    text.reserve(body.size());
    while (!body.empty()) {
        const bool cutsPair = body.size() > kPiece && body[kPiece - 1] == '\r' && body[kPiece] == '\n';
        const std::string_view piece = body.substr(0, kPiece + (cutsPair ? 1 : 0));
        text += ReplaceLineEndings(piece, EndOfLineMacintosh());
        body.remove_prefix(piece.size());
        RuntimeBackgroundTask();
    }
    return text;
}

} // namespace

void claSearchForUpdates::Check(bool showDialog) {
    New<claSearchForUpdates>()->Constructor(showDialog);
}

// The values go out as they stand: a blank in one would reach the request line. Kept on purpose, see docs/reading.md.
void claSearchForUpdates::Constructor(bool showDialog) {
    ShowDialog = showDialog;
    PageReceived = [this](const std::string& url, int32_t status, const Ref<InternetHeaders>& headers,
                          const std::string& body) { Event_PageReceived(url, status, headers, body); };
    Error = [this](int32_t code) { Event_Error(code); };
    Get("http://" + UpdateHost() + "/services/update.php?name=" + GetString("SearchForUpdatesApp") + "&version=" +
        Application::ShortVersion() + "&language=" + GetString("SearchForUpdatesLanguage") + "&system=macosx");
}

// Whatever is neither "error" nor "false", be it these with a line end behind them or nothing at all, is the record of
// a newer version.
void claSearchForUpdates::Event_PageReceived(const std::string& /*url*/, int32_t status,
                                             const Ref<InternetHeaders>& /*headers*/, const std::string& body) {
    const std::string text = WithMacintoshLineEndings(body);
    if (status != kFound || RuntimeStringCompare(text, "error") == 0) {
        if (ShowDialog)
            App::Instance()->Error(GetString("SearchForUpdatesServerError"));
    } else if (RuntimeStringCompare(text, "false") == 0) {
        if (ShowDialog)
            TellThatNothingIsNew();
    } else {
        Offer(text);
    }
}

// Two checks may share the window: then both texts stand in it, and the first to return closes it under the other.
void claSearchForUpdates::Offer(const std::string& record) {
    const auto line = [&record](int32_t number) { return NthField(record, EndOfLineMacintosh(), number); };
    const auto shortLine = [&line](int32_t number) { return line(number).substr(0, kMostOfLine); };
    const std::string title = shortLine(1), file = shortLine(4);
    sndNewVersion()->Play();
    const Ref<winUpdate> window = winUpdate::Instance();
    window->Show();
    window->SetTitle(title);
    const Ref<TextArea> message = window->txtMessage();
    message->SetSelBold(true);
    message->SetSelText(title + EndOfLine());
    message->SetSelBold(false);
    message->SetSelText(GetString("SearchForUpdates" + shortLine(2)) + EndOfLine());
    message->SetSelText(GetString("SearchForUpdatesFilename", file) + EndOfLine());
    const Ref<claPreferences> preferences = App::Instance()->Preferences;
    window->cheCheckAtStartup()->SetValue(preferences->SearchForUpdates);
    window->FileName = file;
    window->DownloadUrl = line(3);
    window->ShowModal(); // no code runs after a quit: the box then counts for nothing
    preferences->SearchForUpdates = window->cheCheckAtStartup()->Value();
    window->Close();
}

void claSearchForUpdates::Event_Error(int32_t code) {
    if (ShowDialog)
        App::Instance()->Error(GetString("SearchForUpdatesConnectionError", Str(code)));
}
