#include "navigation/held_alt.h"

#include "input/input_records.h"

// A synthetic Alt key-down stands.
int g_altUpPending = 0;

void HoldAltDown() {
    g_altUpPending = 1;
    SendRecords(kInAltDown);
}

void ReleasePendingAlt() {
    if (!g_altUpPending) return;
    SendRecords(kInAltUp);
    g_altUpPending = 0;
}
