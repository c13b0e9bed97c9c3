#pragma once

#include "framework/base/Ref.h"

#include <string>

class FolderItem;

// Every text of the interface, by key, in one language at a time. Main thread.
namespace Multilingual {

// Empties the tables and fills them from a strings.txt. A file that is nil or can't be opened is a nil object failure,
// and leaves the tables empty.
void LoadLanguageFile(const Ref<FolderItem>& file);

// The text of that key with its placeholders filled in, each at its first occurrence only; empty if the language does
// not have the key. Takes the same time however many keys there are.
std::string GetString(const std::string& key, const std::string& placeholder1 = "",
                      const std::string& placeholder2 = "", const std::string& placeholder3 = "",
                      const std::string& placeholder4 = "");

// Name of the language folder that belongs to the first of the desktop's wanted languages that has one, or empty. A
// desktop that is set to no language at all gets "English".
std::string SystemLanguage();

// Settles the language: the folder of that name inside `folder`, or, if there is none, the one that the user chooses.
// Loads its strings.txt and gives the menus their texts. A user who chooses none ends the program.
void Initialize(const Ref<FolderItem>& folder, const std::string& language);

// Has the toolkit speak the language of that folder too: its own texts, and the forms of the characters in all texts.
void SpeakLanguageOf(const FolderItem& languageFolder);

// Gives every menu and command its text in the loaded language.
void LocalizeMenu();

} // namespace Multilingual
