#pragma once

#include <string>
#include <string_view>
#include <vector>

// All are pure and safe on every thread.

// The path in a "file:" address of this machine, as the bytes that the address spells; empty for any other address.
std::string PathFromFileUri(std::string_view address);

// The paths in a text/uri-list, in its order, without what is no local file.
std::vector<std::string> PathsFromUriList(std::string_view list);

// The "file:" address of an absolute path, every byte kept.
std::string FileUriFromPath(std::string_view path);
