// Input that the plug-in injects, prepared once. Everything sent with SendInput passes the hooks
// again when the queue delivers it, so each sequence is one that its own second pass lets through.
#pragma once

#include <windows.h>

extern INPUT kInAltDown;
extern INPUT kInAltUp;
extern INPUT kInCtrlDown;
extern INPUT kInCtrlUp;
extern INPUT kInLShiftDown;
extern INPUT kInLShiftUp;
extern INPUT kInRShiftDown;
extern INPUT kInRShiftUp;
extern INPUT kInLeftDown;
extern INPUT kInLeftUp;
extern INPUT kInMiddleDown;
extern INPUT kInMiddleUp;

// Fills the records; called once, when the library is loaded.
void BuildInputRecords();

// Sends the records in one call, in this order, so that no other input comes between them.
template <typename... Records>
void SendRecords(const Records&... records) {
    INPUT inputs[] = {records...};
    SendInput(sizeof...(records), inputs, sizeof(INPUT));
}
