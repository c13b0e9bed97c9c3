#pragma once

class ProgressBar;

// Moves a worker's bar by one block, whatever the block's size. A bar that has reached its maximum, which is an
// estimate, falls back to a bar without a measure. Any thread.
void ProgressStep(ProgressBar& bar);
