// The options window: a modeless property sheet of one page. Its check boxes change the live
// settings at once; "Save && Close" writes them to the file, any other way of closing reloads the
// file and so drops what was not saved.
#pragma once

#include <windows.h>

// The sheet's frame window; null while the window is closed.
extern HWND g_optionsWindow;

// Creates the sheet. To be called only while it is closed.
void ShowOptionsDialog();

// Writes the settings to the file. The window, where it is open, then has nothing to save.
void SaveOptions();

// Sets every check box from the settings and applies the enable rules. Nothing happens while the
// window is closed.
void RefreshOptionsPage();

// Enables or disables the page's controls by the settings; markChanged tells the sheet that there
// is something to save.
void ApplyOptionsEnableRules(bool markChanged);
