// The engine's interface for the host DLLs: plain C functions, the same for both C++ ABIs.
//
// Everything that the plug-in does to the host arrives here, and nothing else does. The functions
// stand in the table host_calls.inc. The host DLLs keep no state of their own.
//
// Handles are pointers into the engine. They stay valid until the object itself goes. All calls
// belong to the user-interface thread.
#pragma once

#include <windows.h>

#if defined(STANDIN_ENGINE_BUILD)
#define ENGINE_API extern "C" __declspec(dllexport)
#else
#define ENGINE_API extern "C" __declspec(dllimport)
#endif

struct eng_view;
struct eng_mode;
struct eng_node;
struct eng_table;   // one of the host's own action tables
struct eng_action;  // one of the host's own actions
struct eng_menu;
struct eng_item;
struct eng_button;

// A MAXScript value on its way to or from a primitive.
enum eng_value_kind {
    ENG_UNDEFINED,
    ENG_OK,
    ENG_BOOLEAN,
    ENG_INTEGER,
    ENG_FLOAT,
    ENG_STRING,
    ENG_NAME,
    ENG_OTHER,
};
struct eng_value {
    enum eng_value_kind kind;
    int integer;  // ENG_BOOLEAN: 0 or 1
    double number;
    const char* text;  // ENG_STRING, ENG_NAME; owned by the caller
};

// What the DLLs of the plug-in's ABI do for the engine: the calls from the host into the plug-in.
// core.dll registers the first table when it is loaded, MAXScrpt.dll the second.
struct eng_plugin_calls {
    int release;  // of the host whose interface these DLLs have; what it says it is may differ
    void* (*create)(void* class_desc);                  // ClassDesc::Create: the GUP*, may be null
    unsigned long (*super_class_id)(void* class_desc);  // ClassDesc::SuperClassID
    int (*table_count)(void* class_desc);               // ClassDesc::NumActionTables
    void* (*table)(void* class_desc, int index);  // ClassDesc::GetActionTable: an ActionTable*
    unsigned long (*gup_start)(void* gup);
    unsigned long (*action_table_id)(void* table);
    int (*action_count)(void* table);
    int (*action_id)(void* table, int index);
    int (*action_checked)(void* table, int id);  // the virtual queries of ActionTable
    int (*action_visible)(void* table, int id);
    int (*action_enabled)(void* table, int id);
    int (*action_icon)(void* table, int id);  // image index, -1: no icon
    // Copies a text, cut to size; 0 when there is none. what: 0 button, 1 menu, 2 description,
    // 3 category, 4 the file of the icon.
    int (*action_text)(void* table, int id, int what, char* text, int size);
    int (*execute_action)(void* callback, int id);  // ActionCallback::ExecuteAction
    void (*mode_changed)(void* callback, struct eng_mode* old_mode, struct eng_mode* new_mode);
};
struct eng_script_calls {
    // Calls a primitive's function with values made from args; its result goes to *result.
    // A failed conversion inside leaves through eng_script_error and does not come back.
    void (*call_primitive)(void* function, const struct eng_value* args, int count,
                           struct eng_value* result);
    // Whether the pointer that plug-ins find the listener by is set.
    void (*show_listener)(int there);
};

#define EFFECT(result, function, parameters, ...) ENGINE_API result function parameters;
#define ALWAYS EFFECT
#define READER EFFECT
#define READER_OF EFFECT
#define READER_AS EFFECT
#define RELEASE(function, parameters, ...) ENGINE_API void function parameters;
#define SILENT EFFECT
#define OWN(result, function, parameters) ENGINE_API result function parameters;
#define FAULT(name)
#include "standin/engine/host_calls.inc"
