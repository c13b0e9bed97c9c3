#include "engine/ProgressStep.h"

#include "framework/windows/ProgressBar.h"

void ProgressStep(ProgressBar& bar) {
    if (bar.Value() == bar.Maximum())
        bar.SetMaximum(0); // the value stays; from the next step on it counts again, past the estimate
    else
        bar.SetValue(bar.Value() + 1);
}
