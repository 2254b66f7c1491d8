// The functions that MAXScript gets from the report plug-in.

#include "report/record.h"
#include "report/report.h"

// Last, because they define macros in lower case.
#include <maxscript/maxscript.h>

#include <maxscript/foundation/functions.h>

namespace {

// kvr_report(), or kvr_report true for ten seconds of input with it.
Value* MakeReport(Value** arguments, int count) {
    report::Make(count > 0 && arguments[0]->to_bool());
    return &true_value;
}

// kvr_record true, and kvr_record false for its end.
Value* Record(Value** arguments, int count) {
    if (count == 0 || arguments[0]->to_bool()) {
        report::StartRecording();
    } else {
        report::StopRecording();
    }
    return &true_value;
}

// For a script of the report's own, which has no other way to answer.
Value* Told(Value** arguments, int count) {
    if (count > 0) report::Tell(arguments[0]->to_bool() != FALSE);
    return &true_value;
}

// The SDK wants the names writable.
MCHAR kReportName[] = _M("kvr_report");
MCHAR kRecordName[] = _M("kvr_record");
MCHAR kToldName[] = _M("kvr_told");

Primitive g_reportPrimitive(kReportName, MakeReport, 0);
Primitive g_recordPrimitive(kRecordName, Record, 0);
Primitive g_toldPrimitive(kToldName, Told, 0);

}  // namespace
