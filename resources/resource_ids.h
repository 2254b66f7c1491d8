// Numbers of everything in karvel.rc. Read by the resource compiler as well as by C++, hence
// macros. The numbers are part of the plug-in's outside: macros of users, stored layouts and the
// host refer to them, so an entry is added at a free number and never renumbered.
#ifndef KARVEL_RESOURCES_RESOURCE_IDS_H
#define KARVEL_RESOURCES_RESOURCE_IDS_H

// Strings: names and descriptions of the library and of its commands.
#define IDS_LIBRARY_DESCRIPTION 1
#define IDS_OPTIONS_MENU 2
#define IDS_ISOLATED_PLAYBACK 3
#define IDS_KARVEL 4
#define IDS_NUDGE_UP 5
#define IDS_STICKY_SHORT_NAME 6
#define IDS_SELECTION_LOCK 7
#define IDS_SNAP_TO_POINTS 8
#define IDS_SNAP_TO_GRIDS 9
#define IDS_SNAP_TO_CURVES 10
#define IDS_SHOW_OPTIONS 11
#define IDS_SNAP_ANGLES 12
#define IDS_TIME_SCRUBBER 13
#define IDS_MAYA_NAVIGATION 14
#define IDS_NUDGE_DOWN 15
#define IDS_NUDGE_LEFT 16
#define IDS_NUDGE_RIGHT 17
#define IDS_CENTER_PIVOT 18
#define IDS_FRAME_SELECTED 19
#define IDS_FRAME_ALL 20
#define IDS_PREVIOUS_KEY 21
#define IDS_NEXT_KEY 22
#define IDS_RESET_ALL_VIEWS 23
#define IDS_ABOUT_MENU 26
#define IDS_ABOUT 27
#define IDS_MAYA_NAVIGATION_MENU 124
#define IDS_ISOLATED_PLAYBACK_BUTTON 127
#define IDS_CREATE_ISOLATED_SET_BUTTON 128
#define IDS_HELP 143
#define IDS_HELP_MENU 144

// Cursors. Control alone takes away from the selection, Shift toggles, both together add.
#define IDC_CURSOR_SELECT_CONTROL 110
#define IDC_CURSOR_SELECT_CONTROL_SHIFT 111
#define IDC_CURSOR_SELECT_SHIFT 112
#define IDC_CURSOR_ORBIT 115
#define IDC_CURSOR_PAN 117
#define IDC_CURSOR_ZOOM 118
#define IDC_CURSOR_REFUSED 120
#define IDC_CURSOR_TIME_SCRUB 135

// Icons and the picture of the welcome window.
#define IDI_OPTIONS_PAGE 136
#define IDI_APPLICATION_KARVEL 137
#define IDI_OPTIONS_WINDOW 503
#define IDB_WELCOME 141

// The accelerator table that the action table asks for. No such resource exists, on purpose: the
// commands come without default keys and every hotkey is the user's own.
#define IDR_ACCELERATORS_ABSENT 40001

// Options window: the page, its menu and their commands.
#define IDD_OPTIONS_PAGE 107
#define IDR_OPTIONS_MENU 122
#define IDC_MIDDLE_CLICK_TRANSFORMS 1004
#define IDC_SLOW_ZOOMING 1005
#define IDC_SHIFT_CLONE 1006
#define IDC_ALT_RIGHT_ZOOM 1007
#define IDC_LOCK_ROTATE_ORTHOGRAPHIC 1009
#define IDC_FOCUS_VIEWPORTS 1010
#define IDC_ALT_LEFT_ROTATE 1011
#define IDC_SELECTION_CURSORS 1012
#define IDC_LOCK_ROTATE_USER 1014
#define IDC_MAYA_STYLE_ACTIVE 1015
#define IDC_GROUP_ZOOM 1023
#define IDC_GROUP_ROTATE 1024
#define IDC_GROUP_MISC 1025
#define IDC_GROUP_NAVIGATION 1026
#define IDC_HIDE_GIZMO 1027
// 1008 is the sheet's own save button, 1028 is handled like a box: neither is free.
#define ID_REVERT_TO_DEFAULTS 40003
#define ID_REVERT_TO_SAVED 40004
#define ID_ABOUT 40006
#define ID_USING_FLINDER 40013

// Welcome window. Its two buttons carry the dialog manager's own numbers, so that Enter starts
// and the host can close the window by the number of OK.
#define IDD_WELCOME 139
#define IDC_GET_STARTED 1
#define IDC_WATCH_VIDEOS 2
#define IDC_DO_NOT_SHOW 1032

// Controls without a number of their own; the resource editor's name for them, which the
// MinGW headers leave out.
#ifndef IDC_STATIC
#define IDC_STATIC (-1)
#endif

#endif
