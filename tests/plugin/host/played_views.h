// The host's viewports and main window, played around the sources that ask for them.
#pragma once

#include <windows.h>

#include <map>
#include <set>

extern std::map<HWND, HWND> g_views;  // window asked about -> window of the view that is answered
extern std::set<HWND> g_locked_views;
extern HWND g_active_view;
extern HWND g_main_window;
extern int g_view_questions;  // how often the host was asked for the view of a window

void ForgetPlayedViews();
