#include "framework/base/ProgramIdentity.h"

#include "framework/base/Immortal.h"

namespace {

const Immortal<ProgramIdentity> program;

} // namespace

const ProgramIdentity& ThisProgram() {
    return *program;
}

void SetThisProgram(const ProgramIdentity& identity) {
    *program = identity;
}
