// Points of the screen in pixels, for code that is free of Win32. The layout is a POINT's.
#pragma once

struct ScreenPoint {
    int x;
    int y;

    friend bool operator==(const ScreenPoint&, const ScreenPoint&) = default;
};

// A drag whose cursor comes this near to an edge of the screen goes on at the other one.
inline constexpr int kScreenMargin = 9;
