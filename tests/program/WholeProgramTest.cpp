#include "tests/program/WholeProgramTest.h"

#include <array>
#include <random>

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPartSize = 300'000;
constexpr std::array<const char*, 3> kNumbers{".001", ".002", ".003"};

fs::path ScratchFolder() {
    const auto* const test = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string(test->test_suite_name()) + "." + test->name();
    std::replace(name.begin(), name.end(), '/', '_');
    return fs::path(OMBRIVEL_SCRATCH) / name;
}

fs::path Emptied(const fs::path& folder) {
    fs::remove_all(folder);
    fs::create_directories(folder / "files");
    return folder;
}

std::string PString(const std::string& text) {
    return static_cast<char>(text.size()) + text;
}

} // namespace

WholeProgramTest::WholeProgramTest()
    : scratch_(Emptied(ScratchFolder())), files_(scratch_ / "files"), desktop(scratch_), executable(OMBRIVEL_PROGRAM) {
    Prefer({.SearchForUpdates = false}); // most tests have no business with a network
}

WholeProgramTest::~WholeProgramTest() {
    programs_.clear();
    if (!HasFailure())
        fs::remove_all(scratch_);
}

void WholeProgramTest::TearDown() {
    if (!HasFailure())
        return;
    desktop.SavePicture(scratch_ / "screen.png");
    std::printf("The screen, the files and the outputs are in %s\n", scratch_.c_str());
    for (const auto& program : programs_)
        std::printf("A run of the program told: %s\n", program->Run().Errors().c_str());
}

Process::Setting WholeProgramTest::NextSetting() {
    Environment environment = desktop.Variables();
    environment["OMBRIVEL_TEST_UPDATE_HOST"] = updateHost_;
    return {environment, files_, scratch_ / "logs" / ("program" + std::to_string(++starts_))};
}

Words WholeProgramTest::Command(Words files) const {
    files.insert(files.begin(), executable);
    return files;
}

Program& WholeProgramTest::StartWith(const Process::Setting& setting, const Words& files) {
    programs_.push_back(std::make_unique<Program>(desktop, Command(files), setting));
    return *programs_.back();
}

Program& WholeProgramTest::Start(const Words& files) {
    return StartWith(NextSetting(), files);
}

Program& WholeProgramTest::StartIn(const std::string& languages, const Words& files) {
    Process::Setting setting = NextSetting();
    setting.environment["LANGUAGE"] = languages;
    return StartWith(setting, files);
}

Program& WholeProgramTest::StartWithoutBus(const Words& files) {
    Process::Setting setting = NextSetting();
    setting.environment.erase("DBUS_SESSION_BUS_ADDRESS");
    return StartWith(setting, files);
}

int WholeProgramTest::StartAgain(const Words& files) {
    return Program(desktop, Command(files), NextSetting()).End();
}

bool WholeProgramTest::Holds(const fs::path& file, const std::string& bytes) {
    std::error_code missing;
    return fs::file_size(file, missing) == bytes.size() && ReadFile(file) == bytes;
}

std::string WholeProgramTest::Noise(std::size_t size, unsigned seed) {
    std::mt19937_64 next(seed);
    std::string noise;
    noise.reserve(size + sizeof next());
    while (noise.size() < size) {
        const auto number = next();
        noise.append(reinterpret_cast<const char*>(&number), sizeof number);
    }
    noise.resize(size);
    return noise;
}

std::string WholeProgramTest::WriteSeries(const std::string& base) {
    const std::string whole = Noise(kPartSize * kNumbers.size() - 1, static_cast<unsigned>(base.size()));
    for (std::size_t i = 0; i < kNumbers.size(); ++i)
        WriteFile(File(base + kNumbers[i]), whole.substr(i * kPartSize, kPartSize));
    return whole;
}

std::string WholeProgramTest::WriteUnfinishedSeries(const std::string& base) {
    const std::string whole = Noise(kPartSize * 2, static_cast<unsigned>(base.size()));
    WriteFile(File(base + ".001"), whole.substr(0, kPartSize));
    WriteFile(File(base + ".002.download"), whole.substr(kPartSize));
    return whole;
}

void WholeProgramTest::AwaitUnfinished(const std::string& base) {
    Await("the first part in " + base, [&] { return Holds(File(base), ReadFile(File(base + ".001"))); });
}

void WholeProgramTest::FinishDownload(const std::string& base) {
    fs::rename(File(base + ".002.download"), File(base + ".002"));
}

fs::path WholeProgramTest::PreferencesFile() const {
    return desktop.Configuration() / "Ombrivel " OMBRIVEL_LONG_VERSION " Preferences";
}

std::string WholeProgramTest::PreferencesBytes(const Settings& settings, const std::string& language) {
    std::string bytes = PString("Ombrivel Preferences Version " OMBRIVEL_LONG_VERSION) + PString(language);
    for (const bool value : {settings.AutoQuit, settings.LaunchArchives, settings.MovePartsToTrash,
                             settings.ShowFilesAfter, settings.SearchForUpdates})
        bytes += value ? '\1' : '\0';
    return bytes;
}

void WholeProgramTest::Prefer(const Settings& settings) {
    WriteFile(PreferencesFile(), PreferencesBytes(settings, "English"));
}
