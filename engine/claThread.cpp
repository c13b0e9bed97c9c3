#include "engine/claThread.h"

#include "framework/windows/ProgressBar.h"

void claThread::ProgressStep(ProgressBar& bar) {
    if (bar.Value() == bar.Maximum())
        bar.SetMaximum(0); // the value stays; from the next step on it counts again, past the estimate
    else
        bar.SetValue(bar.Value() + 1);
}
