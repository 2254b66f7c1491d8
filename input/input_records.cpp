#include "input/input_records.h"

INPUT kInAltDown;
INPUT kInAltUp;
INPUT kInCtrlDown;
INPUT kInCtrlUp;
INPUT kInRCtrlDown;
INPUT kInRCtrlUp;
INPUT kInLShiftDown;
INPUT kInLShiftUp;
INPUT kInRShiftDown;
INPUT kInRShiftUp;
INPUT kInLeftDown;
INPUT kInLeftUp;
INPUT kInRightDown;
INPUT kInRightUp;
INPUT kInMiddleDown;
INPUT kInMiddleUp;

namespace {

INPUT KeyRecord(WORD key, DWORD flags) {
    INPUT record = {};
    record.type = INPUT_KEYBOARD;
    record.ki.wVk = key;
    record.ki.dwFlags = flags;
    record.ki.dwExtraInfo = static_cast<ULONG_PTR>(GetMessageExtraInfo());
    return record;
}

INPUT MouseRecord(DWORD flags) {
    INPUT record = {};
    record.type = INPUT_MOUSE;
    record.mi.dwFlags = flags;
    record.mi.dwExtraInfo = static_cast<ULONG_PTR>(GetMessageExtraInfo());
    return record;
}

}  // namespace

void BuildInputRecords() {
    kInAltDown = KeyRecord(VK_MENU, 0);
    kInAltUp = KeyRecord(VK_MENU, KEYEVENTF_KEYUP);
    kInCtrlDown = KeyRecord(VK_CONTROL, 0);
    kInCtrlUp = KeyRecord(VK_CONTROL, KEYEVENTF_KEYUP);
    kInRCtrlDown = KeyRecord(VK_RCONTROL, KEYEVENTF_EXTENDEDKEY);
    kInRCtrlUp = KeyRecord(VK_RCONTROL, KEYEVENTF_EXTENDEDKEY | KEYEVENTF_KEYUP);
    kInLShiftDown = KeyRecord(VK_LSHIFT, 0);
    kInLShiftUp = KeyRecord(VK_LSHIFT, KEYEVENTF_KEYUP);
    kInRShiftDown = KeyRecord(VK_RSHIFT, 0);
    kInRShiftUp = KeyRecord(VK_RSHIFT, KEYEVENTF_KEYUP);
    kInLeftDown = MouseRecord(MOUSEEVENTF_LEFTDOWN);
    kInLeftUp = MouseRecord(MOUSEEVENTF_LEFTUP);
    kInRightDown = MouseRecord(MOUSEEVENTF_RIGHTDOWN);
    kInRightUp = MouseRecord(MOUSEEVENTF_RIGHTUP);
    kInMiddleDown = MouseRecord(MOUSEEVENTF_MIDDLEDOWN);
    kInMiddleUp = MouseRecord(MOUSEEVENTF_MIDDLEUP);
}

const INPUT& ClickDown() {
    return GetSystemMetrics(SM_SWAPBUTTON) ? kInRightDown : kInLeftDown;
}

const INPUT& ClickUp() {
    return GetSystemMetrics(SM_SWAPBUTTON) ? kInRightUp : kInLeftUp;
}
