#pragma once

#include <maxscript/foundation/streams.h>

// The window that shows what scripts print. Only the stream is of interest; what stands around
// it is the host's.
class Listener {
public:
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

protected:
    Listener() : hostData(), edit_stream(nullptr), moreHostData() {}

private:
    unsigned char hostData[104];

public:
    WindowStream* edit_stream;

private:
    unsigned char moreHostData[48];
};

SDK_MAXSCRIPT_API extern Listener* the_listener;
