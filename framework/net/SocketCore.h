#pragma once

#include "framework/base/Ref.h"

#include <cerrno>
#include <cstdint>

// What every socket has. All of it belongs to the main thread. A socket keeps itself alive from Connect until the
// connection has ended or been closed, even if nobody else holds it, and may connect again and again, also from within
// its own events.
class SocketCore : public Object {
public:
    int32_t Port = 0; // to connect to

    // Starts connecting, in place of any connection there is, and returns at once: Connected or Error tells the rest.
    // Not from a constructor: nothing can hold an object that is still being made.
    virtual void Connect() = 0;
    // Ends the connection, if any, without a further event of it. What was received stays readable.
    virtual void Close() = 0;
    // Drops all data that wait to be read or sent.
    virtual void Purge() = 0;
    // Gives the socket a turn and raises the events that are due; waits for something to do, up to some milliseconds.
    // For loops that do not return to the event loop.
    virtual void Poll() = 0;

    virtual bool IsConnected() const = 0;
    // Why the last connection failed or ended: 100 refused, 101 ended by the other side, 102 host not known, 103 not
    // the number of a port, else 200 and the system's error number. 0 before.
    virtual int32_t LastErrorCode() const = 0;
    static constexpr int32_t kOutOfMemory = 200 + ENOMEM; // what was received and not yet read is lost

protected:
    // Received data wait to be read. Comes again after a time in which the handler left the data that arrived.
    virtual void Event_DataAvailable() {}
    // Connecting has failed, or the open connection has ended, in whatever way; all its data have been announced.
    virtual void Event_Error() {}
    // All that was written has been handed to the system, or dropped as the connection is at its end.
    virtual void Event_SendComplete(bool /*aborted*/) {}
};
