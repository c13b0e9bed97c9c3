#pragma once

#include "framework/base/Ref.h"
#include "framework/files/SlowDevice.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <vector>

class FolderItem;

// Has the files that one operation makes in a folder reach a device that is slow or can be pulled out, as they are
// written: only some tenths of a second's worth is still on its way at any time. On an internal disk it does nothing.
// Used by one thread, for one open file at a time.
class Writeback : public Object {
public:
    // Once `stop`, which outlives this, is set, nothing is waited for any more.
    Writeback(const FolderItem& folder, const std::atomic<bool>& stop);
    ~Writeback() override;

    // To be called by a stream whenever its file has grown to `size` bytes, and before it is closed. They give the
    // error number of what could not be brought to the device, 0 for none.
    int Wrote(int descriptor, int64_t size);
    int Close(int descriptor, int64_t size);

    // Returns when all the files have reached the device, under their names; the error number if they have not. The
    // last call.
    int WaitUntilOnDevice();

private:
    bool MayWait() const { return kind_ != DeviceKind::Internal && !stop_; }
    int WaitFor(int descriptor, int64_t from, int64_t to);
    int KeepSmallFile(int descriptor, int64_t size);
    int WaitForSmallFiles();
    void CloseSmallFiles();
    void Release();
    void AdaptWindow(std::chrono::steady_clock::duration waited);

    const std::atomic<bool>& stop_;
    const DeviceKind kind_;
    int folder_;     // descriptor; older than any failure that it is to report
    int64_t window_; // bytes after which the device is waited for
    // Of the open file: written out up to there, and begun to be written out up to there.
    int64_t waitedUntil_ = 0, begunUntil_ = 0;
    // To wait for each file that is smaller than the window would take longer than to write it.
    std::vector<int> smallFiles_; // descriptors
    int64_t smallBytes_ = 0;
    bool manySmallFiles_ = false; // more than there are descriptors of
};
