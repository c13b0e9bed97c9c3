#include "framework/desktop/Opener.h"

#include "framework/files/ProgramFile.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

void RunOpener(const std::string& verb, const std::vector<std::string>& arguments) {
    const std::string program = PathBesideProgram("../libexec/ombrivel-opener");
    std::vector<std::string> words{program, verb};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);

    pid_t child = 0;
    if (posix_spawn(&child, program.c_str(), nullptr, nullptr, pointers.data(), environ) == 0)
        waitpid(child, nullptr, 0); // it puts itself into the background at once
}
