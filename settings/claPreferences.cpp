#include "settings/claPreferences.h"

#include "engine/FileTypes.h"
#include "framework/app/Application.h"
#include "framework/desktop/Sound.h"
#include "framework/files/BinaryStream.h"
#include "framework/files/FolderItem.h"
#include "framework/files/SpecialFolder.h"
#include "framework/windows/Keyboard.h"
#include "ui/Sounds.h"

namespace {

// As they follow the language in the file, which is not the order of their declaration.
constexpr bool claPreferences::*kSwitches[] = {&claPreferences::AutoQuit, &claPreferences::LaunchArchives,
                                               &claPreferences::MovePartsToTrash, &claPreferences::ShowFilesAfter,
                                               &claPreferences::SearchForUpdates};

} // namespace

claPreferences::claPreferences()
    : PreferencesVersion("Ombrivel Preferences Version " + Application::LongVersion()),
      // Every version has a file of its own; a new one starts with the defaults.
      file_(SpecialFolder::Preferences()->Child("Ombrivel " + Application::LongVersion() + " Preferences")) {}

void claPreferences::Load() {
    if (Keyboard::AsyncShiftKey()) {
        sndResetPreferences()->Play();
        return; // the file stays until Save writes the defaults over it
    }
    if (!file_->Exists())
        return;
    const Ref<BinaryStream> stream = Required(file_->OpenAsBinaryFile(false), "can't open " + file_->AbsolutePath());
    if (stream->ReadPString() == PreferencesVersion) { // to the byte
        // A file that is too short gives what a read behind the end gives: empty, and false.
        Language = stream->ReadPString();
        for (bool claPreferences::*const setting : kSwitches)
            this->*setting = stream->ReadBoolean();
    }
    stream->Close();
}

void claPreferences::Save() const {
    const Ref<BinaryStream> stream = file_->ReplaceBinaryFile(FileTypes::Unknown()->Operator_Convert());
    stream->WritePString(PreferencesVersion);
    stream->WritePString(Language);
    for (bool claPreferences::*const setting : kSwitches)
        stream->WriteBoolean(this->*setting);
    stream->Close();
}
