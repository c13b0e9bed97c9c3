#include "framework/app/ModalRun.h"

#include "framework/app/OpenEvents.h"

ModalRun::ModalRun() {
    OpenEvents::Instance().ModalRunBegan();
}

ModalRun::~ModalRun() {
    OpenEvents::Instance().ModalRunEnded();
}
