#pragma once

// Open and new-document events wait while one of these lives: around every run of a modal dialog. Main thread.
class ModalRun {
public:
    ModalRun();
    ~ModalRun();
    ModalRun(const ModalRun&) = delete;
    ModalRun& operator=(const ModalRun&) = delete;
};
