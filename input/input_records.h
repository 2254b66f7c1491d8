// Input that the plug-in injects, prepared once. Everything sent with SendInput passes the hooks
// again when the queue delivers it, so each sequence is one that its own second pass lets through.
#pragma once

#include <windows.h>

extern INPUT kInAltDown;
extern INPUT kInAltUp;
extern INPUT kInCtrlDown;
extern INPUT kInCtrlUp;
extern INPUT kInRCtrlDown;
extern INPUT kInRCtrlUp;
extern INPUT kInLShiftDown;
extern INPUT kInLShiftUp;
extern INPUT kInRShiftDown;
extern INPUT kInRShiftUp;
extern INPUT kInLeftDown;
extern INPUT kInLeftUp;
extern INPUT kInRightDown;
extern INPUT kInRightUp;
extern INPUT kInMiddleDown;
extern INPUT kInMiddleUp;

// Fills the records; called once, when the library is loaded.
void BuildInputRecords();

// Records are about buttons of the mouse. These are the ones that arrive as the left button: with
// the buttons swapped in the user's system that is the right one.
const INPUT& ClickDown();
const INPUT& ClickUp();

// Sends the records in one call, in this order, so that no other input comes between them. False:
// the system did not take all of them.
template <typename... Records>
bool SendRecords(const Records&... records) {
    INPUT inputs[] = {records...};
    return SendInput(sizeof...(records), inputs, sizeof(INPUT)) == sizeof...(records);
}
