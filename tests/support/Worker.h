#pragma once

#include "framework/threads/Thread.h"

#include <functional>

// A worker that does what a test has it do.
class Worker : public Thread {
public:
    explicit Worker(std::function<void(Worker&)> body) : body_(std::move(body)) {}

protected:
    void Event_Run() override { body_(*this); }

private:
    std::function<void(Worker&)> body_;
};
