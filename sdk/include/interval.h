#pragma once

#include <maxtypes.h>
#include <sdk_layout.h>

// A stretch of time, both ends included.
class Interval {
public:
    SDK_CORE_API Interval(TimeValue first, TimeValue last);
    TimeValue Start() const { return start; }
    TimeValue End() const { return end; }

private:
    TimeValue start;
    TimeValue end;
};

#define TIME_NegInfinity TimeValue(0x80000000)
#define TIME_PosInfinity TimeValue(0x7fffffff)
#define FOREVER Interval(TIME_NegInfinity, TIME_PosInfinity)
