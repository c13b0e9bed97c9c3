#include "ui/ShowFileInFinder.h"

#include "framework/desktop/Desktop.h"

void ShowFileInFinder(const std::vector<Variant>& paths) {
    // Paths are texts; an integer is none, and shows nothing.
    for (const Variant& path : paths) {
        if (const auto* text = std::get_if<std::string>(&path))
            RevealFile(*text);
    }
}
