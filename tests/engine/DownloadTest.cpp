#include "settings/Multilingual.h"
#include "tests/support/ProgramTest.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>

#include <algorithm>
#include <cstdlib>
#include <map>

namespace {

// Has what looks once a second look more often from its first look on, and counts.
class LookCounter : public QObject {
public:
    LookCounter() { qApp->installEventFilter(this); }

    void Restart() { looks_.clear(); }
    // Whether there are so many and each has looked so often.
    bool HaveLooked(std::size_t timers, int times) const {
        const auto often = [times](const auto& timer) { return timer.second >= times; };
        return looks_.size() == timers && std::all_of(looks_.begin(), looks_.end(), often);
    }

    bool eventFilter(QObject* object, QEvent* event) override {
        auto* const timer = event->type() == QEvent::Timer ? qobject_cast<QTimer*>(object) : nullptr;
        if (timer != nullptr && timer->interval() == 1000)
            timer->setInterval(2);
        if (timer != nullptr && timer->interval() == 2)
            ++looks_[timer];
        return false;
    }

private:
    std::map<QTimer*, int> looks_;
};

class DownloadTest : public ProgramTest {
protected:
    // What another program does in the folder of that number.
    void Run(std::size_t number, const std::string& script) const {
        const std::string place = folder.Path(std::to_string(number));
        std::filesystem::create_directories(place);
        EXPECT_EQ(std::system(("cd '" + place + "' && { " + script + "; }").c_str()), 0) << script;
    }

    void Glue(std::size_t number, const std::string& base) const {
        Run(number, "printf 1 >" + base + ".001");
        App::Instance()->DecodeFile(New<FolderItem>(folder.Path(std::to_string(number)) + "/" + base + ".001"));
    }

    std::string Glued(std::size_t number, const std::string& base) const {
        return folder.Read(std::to_string(number) + "/" + base);
    }
};

// Each in a folder of its own, in the order of calls that the program at its other end has.
TEST_F(DownloadTest, WaitsForEveryProgramsDownloadUntilItIsThere) {
    const struct {
        std::string base, begin, goOn, end; // of the second part, whose last byte is a 2
    } table[] = {
        // Firefox.
        {"film.mov", ": >film.mov.002; printf ha >film.Ab3-_xyZ.mov.002.part", "printf lf >>film.Ab3-_xyZ.mov.002.part",
         "printf 2 >>film.Ab3-_xyZ.mov.002.part; mv film.Ab3-_xyZ.mov.002.part film.mov.002"},
        {"film", ": >film.002; : >film.Ab3-_xyZ.002.part", ":", "printf 2 >film.002; rm *.part"},
        {".film", ": >.film.002; : >.Ab3-_xyZ.film.002.part", ":", "printf 2 >.film.002; rm .Ab*"},
        {"my.film.x", ": >my.film.x.002; : >my.Ab3-_xyZ.film.x.002.part", ":", "printf 2 >my.film.x.002"},
        {"a", ": >a.Ab3-_xyZ.002.part", ":", "printf 2 >>a.Ab3-_xyZ.002.part; mv a.Ab3-_xyZ.002.part a.002"},
        // The same, given up, and then begun anew with the empty file that is left or with another.
        {"b", ": >b.002; : >b.Ab3-_xyZ.002.part", "rm *.part", "printf 2 >b.12345678.002.part; mv b.12*.part b.002"},
        {"c", ": >c.002; : >c.Ab3-_xyZ.002.part", "rm *.part; : >new; mv new c.002; : >c.12345678.002.part",
         "printf 2 >c.12345678.002.part; mv c.12*.part c.002"},
        // Older ones, also of a file that has no bytes.
        {"d", ": >d.002; printf half >d.002.part", "chmod 0 d.002.part",
         "chmod 600 *.part; printf 2 >>d.002.part; mv d.002.part d.002"},
        {"e", ": >e.002; : >e.002.part", ":", "mv e.002.part e.002"},
        // Epiphany.
        {"f", ": >f.002; : >f.002.wkdownload", "printf 2 >f.002.wkdownload", "mv f.002.wkdownload f.002"},
        // Chromium: wakes nobody by vanishing.
        {"g", "printf ha >g.002.crdownload", "mv g.002.crdownload half", "printf 2 >>half; mv half g.002"},
        // Opera.
        {"h", "printf ha >h.002.opdownload", ":", "printf 2 >>h.002.opdownload; mv h.002.opdownload h.002"},
        // Safari.
        {"i", "mkdir i.002.download; printf 2 >i.002.download/i.002", ":", "mv i.002.download/i.002 ."},
        // aria2, with its room asked for or growing.
        {"j", "truncate -s 9 j.002; : >j.002.aria2", "printf half 1<>j.002", "printf 2 >j.002; rm j.002.aria2"},
        {"k", ": >k.002.aria2", "printf ha >k.002", "printf 2 >>k.002; rm k.002.aria2"},
        {"l", ": >l.002; : >l.002.aria2", "rm l.002.aria2", "printf 2 >l.002"},
        // Whatever stands under the name of a download.
        {"m", ": >m.002; ln -s nowhere m.002.part", ":", "printf 2 >m.002"},
        {"n", ": >n.002; mkdir -m 0 n.002.wkdownload", ":", "rmdir n.002.wkdownload; printf 2 >n.002"},
    };
    LookCounter counter;
    for (std::size_t i = 0; i < std::size(table); ++i) {
        Run(i, table[i].begin);
        Glue(i, table[i].base);
    }
    const auto waits = [](const auto& row) { return row->Status == Multilingual::GetString("MainStatusWaiting", "2"); };
    EXPECT_TRUE(
        WaitUntil([&] { return rows.size() == std::size(table) && std::all_of(rows.begin(), rows.end(), waits); }));
    for (std::size_t i = 0; i < std::size(table); ++i)
        Run(i, table[i].goOn);
    counter.Restart();
    EXPECT_TRUE(WaitUntil([&] { return counter.HaveLooked(std::size(table), 4); }));
    for (const Ref<claFilePerformInfo>& row : rows)
        EXPECT_TRUE(waits(row)) << row->Name << ": " << row->Status;
    for (std::size_t i = 0; i < std::size(table); ++i)
        Run(i, table[i].end);
    EXPECT_TRUE(WaitForWorkers());
    for (std::size_t i = 0; i < std::size(table); ++i) {
        const std::string glued = Glued(i, table[i].base);
        EXPECT_TRUE(glued.starts_with("1") && glued.ends_with(table[i].base == "e" ? "1" : "2")) << table[i].begin;
    }
}

// An empty part is one too, and no name but a browser's own makes it a download.
TEST_F(DownloadTest, WaitsForNothingElse) {
    const std::pair<std::string, std::string> table[] = {
        {": >a.002; printf 3 >a.003", "13"},
        {": >a.002; : >a.Ab3-_xy.002.part; : >a.Ab3-_xyZ0.002.part; : >a.Ab3-_xy+.002.part; : >a.002.Ab3-_xyZ.part",
         "1"},
        {": >a.002; : >a.002.Ab3-_xyZ.part; : >aAb3-_xyZ.002.part; : >a.Ab3-_xyZ.003; : >A.Ab3-_xyZ.002.part", "1"},
        {": >a.002; : >b.Ab3-_xyZ.002.part; : >a.Ab3-_xyZ.01.part; : >a.002.PART; : >a.002.part.1; : >a.part", "1"},
        {"printf 2 >a.002; : >a.002.part; : >a.Ab3-_xyZ.002.part; : >a.002.crdownload", "12"},
        {"mkfifo a.002; : >a.002.part", "1"}, // which can't be opened
    };
    for (std::size_t i = 0; i < std::size(table); ++i) {
        Run(i, table[i].first);
        Glue(i, "a");
    }
    EXPECT_TRUE(WaitForWorkers());
    for (std::size_t i = 0; i < std::size(table); ++i)
        EXPECT_EQ(Glued(i, "a"), table[i].second) << table[i].first;
}

} // namespace
