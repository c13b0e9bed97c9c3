// The program on a display that nobody sees, driven by lines on standard input. Tells on standard output what comes of
// them: each line is answered, and rows are told as they come and go. Fields are parted by tabs.

#include "core/App.h"
#include "engine/PendingOperation.h"
#include "engine/claDecodeThread.h"
#include "engine/claEncodeThread.h"
#include "framework/files/FolderItem.h"
#include "framework/threads/MainThread.h"
#include "framework/windows/ComboBox.h"
#include "settings/claPreferences.h"
#include "ui/claFilePerform.h"
#include "ui/claFilePerformInfo.h"
#include "ui/winCut.h"
#include "ui/winMain.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

// In one call, as rows of several workers and answers may come at the same time.
void Tell(const std::string& line) {
    const std::string whole = line + "\n";
    if (write(STDOUT_FILENO, whole.data(), whole.size()) < 0)
        std::_Exit(1); // nobody is there any more
}

claFilePerform& List() {
    return *winMain::Instance()->canPerform();
}

// Every row gets a number when it comes, by which it is told.
class Rows {
public:
    // Whenever the list has changed.
    void Look() {
        const std::vector<Ref<claFilePerformInfo>> rows = List().Info;
        for (const Ref<claFilePerformInfo>& row : rows) {
            const auto isSame = [&row](const auto& known) { return known.second == row; };
            if (std::none_of(known_.begin(), known_.end(), isSame)) {
                known_[++last_] = row;
                Tell("row\t" + std::to_string(last_) + Describe(*row));
            }
        }
        std::erase_if(known_, [&rows](const auto& known) {
            const bool ended = std::find(rows.begin(), rows.end(), known.second) == rows.end();
            if (ended)
                Tell("end\t" + std::to_string(known.first));
            return ended;
        });
    }

    // By its button, which a screen reader presses too.
    void Stop(std::size_t place) const {
        if (List().Info.empty())
            return;
        place %= List().Info.size();
        for (const auto& [number, row] : known_)
            if (row == List().Info[place])
                Tell("stopped\t" + std::to_string(number));
        List().AccessibleRows()->at(place).Action();
    }

private:
    static std::string Describe(const claFilePerformInfo& row) {
        if (const auto* const cut = dynamic_cast<claEncodeThread*>(row.PerformThread.Get()))
            return "\tcut\t" + row.Name + "\t" + cut->FileName + "\t" + std::to_string(cut->PartSize);
        const auto& glue = dynamic_cast<claDecodeThread&>(*row.PerformThread);
        return "\tglue\t" + row.Name + "\t" + glue.FileName + "\t0";
    }

    std::map<int, Ref<claFilePerformInfo>> known_;
    int last_ = 0;
};

Rows& TheRows() {
    static Rows& rows = *new Rows;
    return rows;
}

void Cut(const std::string& path, const std::string& megabytes) {
    PostToMainThread([megabytes] {
        winCut::Instance()->comPartSize()->SetText(megabytes);
        winCut::Instance()->ActionButton->Push();
    });
    App::Instance()->EncodeFile(New<FolderItem>(path));
}

void QuitAndAgree() {
    PostToMainThread([] {
        if (const auto* const question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            question->defaultButton()->click();
    });
    winMain::Instance()->Close();
}

void Prefer(const std::string& letters) {
    const Ref<claPreferences> preferences = App::Instance()->Preferences;
    const auto wants = [&letters](char letter) { return letters.find(letter) != std::string::npos; };
    preferences->MovePartsToTrash = wants('t');
    preferences->LaunchArchives = wants('l');
    preferences->ShowFilesAfter = wants('s');
    preferences->AutoQuit = App::Instance()->QuitAfter = wants('q');
}

std::string State() {
    const auto waiting = std::count_if(List().Info.begin(), List().Info.end(),
                                       [](const auto& row) { return row->Status.starts_with("Waiting for part"); });
    std::ostringstream state;
    state << "state\t" << Thread::RunningCount() << "\t" << PendingOperation::Any() << "\t" << List().Info.size()
          << "\t" << waiting;
    return state.str();
}

// Descriptors below the folder, all descriptors, threads, and helpers that have not been taken leave of.
std::string Left(const std::string& folder) {
    int below = 0, all = 0, helpers = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        below += fs::read_symlink(entry, gone).string().starts_with(folder) ? 1 : 0;
        ++all;
    }
    siginfo_t helper{};
    helpers = waitid(P_ALL, 0, &helper, WEXITED | WNOHANG | WNOWAIT) == 0 ? 1 : 0;
    const auto threads = std::distance(fs::directory_iterator("/proc/self/task"), fs::directory_iterator());
    std::ostringstream left;
    left << "left\t" << below << "\t" << all << "\t" << threads << "\t" << helpers;
    return left.str();
}

[[noreturn]] void End() {
    int code = 0;
#ifdef __SANITIZE_ADDRESS__
    code = __lsan_do_recoverable_leak_check() != 0 ? 1 : 0;
#endif
    std::_Exit(code);
}

std::string Obey(const Words& words) {
    const std::string& verb = words.at(0);
    if (verb == "cut")
        Cut(words.at(1), words.at(2));
    else if (verb == "open")
        App::Instance()->Event_OpenDocument(New<FolderItem>(words.at(1)));
    else if (verb == "stop")
        TheRows().Stop(std::stoul(words.at(1)));
    else if (verb == "prefer")
        Prefer(words.at(1));
    else if (verb == "state")
        return State();
    else if (verb == "left")
        return Left(words.at(1));
    else if (verb == "quit")
        QuitAndAgree();
    else if (verb == "end")
        End();
    return "ok";
}

// Answers also where an exception leaves what is done, which ends at the edge of the event.
struct Answered {
    std::string answer = "failed";
    ~Answered() { Tell(answer); }
};

void ObeyAndAnswer(const std::string& line) {
    Words words;
    std::istringstream fields(line);
    for (std::string word; std::getline(fields, word, '\t');)
        words.push_back(word);
    Answered answered;
    answered.answer = Obey(words);
}

void ReadLines() {
    for (std::string line; std::getline(std::cin, line);)
        PostToMainThread([line] { ObeyAndAnswer(line); });
    std::_Exit(0);
}

void Begin() {
    const auto setStatus = List().SetStatus;
    List().SetStatus = [setStatus](const std::string& text) {
        setStatus(text);
        TheRows().Look();
    };
    std::thread(ReadLines).detach();
    Tell("ready");
}

} // namespace

int main(int /*argumentCount*/, char** arguments) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    return RunApplication(1, arguments, OmbrivelIdentity(), [] {
        PostToMainThread(Begin);
        return Startup();
    });
}
