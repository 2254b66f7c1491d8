// The engine's interface for the host DLLs: plain C functions, the same for both C++ ABIs.
//
// Everything that the plug-in does to the host arrives here, and nothing else does: each function
// first writes its trace line (an effect or a reader, as docs/trace.md tells) and then acts on the
// world. The host DLLs keep no state of their own.
//
// Handles are pointers into the engine. They stay valid until the object itself goes; null is
// answered where the host would answer null, and is accepted where said. All calls belong to the
// user-interface thread.
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
    void* (*create)(void* class_desc);                  // ClassDesc::Create: the GUP*, may be null
    const char* (*class_name)(void* class_desc);        // ClassDesc::ClassName, may be null
    unsigned long (*super_class_id)(void* class_desc);  // ClassDesc::SuperClassID
    int (*table_count)(void* class_desc);               // ClassDesc::NumActionTables
    void* (*table)(void* class_desc, int index);  // ClassDesc::GetActionTable: an ActionTable*
    unsigned long (*gup_start)(void* gup);
    void (*gup_stop)(void* gup);
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
ENGINE_API void eng_register_plugin_calls(const struct eng_plugin_calls* calls);
ENGINE_API void eng_register_script_calls(const struct eng_script_calls* calls);

// Every handle has one slot in which a host DLL keeps the SDK object that stands for it.
ENGINE_API void** eng_slot(void* handle);

// Whether a scenario makes this call fail: for calls that only hand out what a host DLL has.
ENGINE_API int eng_fails(const char* call);

// A reserved slot of a host class was called: traced as `sdk unexpected WHAT`, ends the play with
// an error.
ENGINE_API void eng_unexpected(const char* what);

// --- heap of the host (counted; `eng_free(null)` does nothing) ---
ENGINE_API void* eng_alloc(size_t bytes);
// The host's heap has nothing left and says so by an exception, which goes through the plug-in to
// where the host called it. Does not come back.
// Whether the code at this address is the plug-in's.
ENGINE_API int eng_is_of_plugin(const void* address);
ENGINE_API void eng_throw_no_memory(void);
ENGINE_API void eng_free(void* memory);

// --- core interface ---
ENGINE_API unsigned long eng_version(void);  // release << 16 | API number << 8 | revision
ENGINE_API HWND eng_main_window(void);
ENGINE_API const char* eng_dir(int which);  // owned by the engine; empty for unknown ids
ENGINE_API void eng_register_dialog(HWND dialog);
ENGINE_API int eng_unregister_dialog(HWND dialog);

ENGINE_API struct eng_view* eng_active_viewport(void);        // to be released
ENGINE_API struct eng_view* eng_viewport_of(HWND window);     // to be released; null: no viewport
ENGINE_API void eng_release_viewport(struct eng_view* view);  // null is reported as an error
ENGINE_API int eng_set_active_viewport(HWND window);
ENGINE_API HWND eng_view_window(struct eng_view* view);
ENGINE_API int eng_view_is_perspective(struct eng_view* view);
ENGINE_API int eng_view_type(struct eng_view* view);  // VIEW_... code
ENGINE_API struct eng_node* eng_view_camera(struct eng_view* view);
ENGINE_API struct eng_node* eng_view_spot(struct eng_view* view);
ENGINE_API int eng_view_is_active(struct eng_view* view);
ENGINE_API int eng_view_is_enabled(struct eng_view* view);

ENGINE_API struct eng_mode* eng_current_mode(void);  // null: no command mode
ENGINE_API int eng_mode_id(struct eng_mode* mode);
ENGINE_API int eng_mode_class(struct eng_mode* mode);
ENGINE_API void eng_push_standard_mode(int id);
ENGINE_API void eng_set_standard_mode(int id);
ENGINE_API void eng_pop_mode(void);
ENGINE_API int eng_mode_stack_size(void);
ENGINE_API struct eng_mode* eng_mode_stack_entry(int entry);  // 0: the current one
ENGINE_API void eng_register_mode_callback(void* callback);   // CommandModeChangedCallback*

ENGINE_API int eng_selected_count(void);
ENGINE_API struct eng_node* eng_selected(int index);
ENGINE_API void eng_select_node(struct eng_node* node, int clear);
ENGINE_API void eng_clear_selection(int redraw);
ENGINE_API void eng_select_nodes(struct eng_node* const* nodes, int count, int select, int redraw);
ENGINE_API int eng_subobject_level(void);
ENGINE_API int eng_snap_state(void);
ENGINE_API int eng_axis_constraints(void);
ENGINE_API void eng_set_axis_constraints(int constraint);
ENGINE_API int eng_coordinate_system(void);
ENGINE_API void eng_set_coordinate_system(int system);
ENGINE_API int eng_time(void);  // ticks
ENGINE_API void eng_disable_redraw(void);
ENGINE_API void eng_enable_redraw(void);
ENGINE_API void eng_redraw_views(int time, unsigned long flags);
ENGINE_API void eng_force_complete_redraw(int disabled_too);
ENGINE_API void eng_zoom_extents(int all, int skip_perspective);

// --- nodes ---
ENGINE_API const char* eng_node_name(struct eng_node* node);
ENGINE_API void eng_node_hide(struct eng_node* node, int hide);
ENGINE_API int eng_node_is_hidden(struct eng_node* node);
ENGINE_API void eng_node_notify(struct eng_node* node, unsigned long part, unsigned message);

// --- named selection sets ---
ENGINE_API int eng_has_set_manager(void);
ENGINE_API int eng_set_count(void);
ENGINE_API const char* eng_set_name(int set);  // null for a bad index
ENGINE_API int eng_set_node_count(int set);
ENGINE_API struct eng_node* eng_set_node(int set, int index);

// --- undo, macro recorder ---
ENGINE_API void eng_hold_begin(void);
ENGINE_API void eng_hold_accept(const char* name);
ENGINE_API void eng_hold_cancel(void);
ENGINE_API void eng_macro_enable(void);
ENGINE_API void eng_macro_disable(void);
ENGINE_API int eng_macro_enabled(void);

// --- actions ---
ENGINE_API int eng_register_context(unsigned long id, const char* name);  // 0: known already
ENGINE_API int eng_activate_table(void* callback, unsigned long table);   // ActionCallback*
ENGINE_API int eng_deactivate_table(void* callback, unsigned long table);
// The plug-in's own ActionTable* when it has this id, else null; asked before eng_find_table.
ENGINE_API void* eng_plugin_table(unsigned long id);
ENGINE_API struct eng_table* eng_find_table(unsigned long id);
ENGINE_API struct eng_action* eng_table_action(struct eng_table* table, int id);
ENGINE_API int eng_action_id(struct eng_action* action);
ENGINE_API int eng_action_is_checked(struct eng_action* action);
ENGINE_API int eng_action_is_enabled(struct eng_action* action);
ENGINE_API int eng_action_execute(struct eng_action* action);
// The ActionItem of the plug-in's own table is executed by the host DLL through this.
ENGINE_API int eng_plugin_action_execute(unsigned long table, int id);

// --- menus ---
ENGINE_API struct eng_menu* eng_new_menu(void);
ENGINE_API void eng_release_menu(struct eng_menu* menu);
ENGINE_API struct eng_item* eng_new_item(void);
ENGINE_API void eng_release_item(struct eng_item* item);
ENGINE_API void eng_menu_set_title(struct eng_menu* menu, const char* title);
ENGINE_API int eng_menu_count(struct eng_menu* menu);
ENGINE_API void eng_menu_add(struct eng_menu* menu, struct eng_item* item, int position);
ENGINE_API void eng_item_set_title(struct eng_item* item, const char* title);
ENGINE_API void eng_item_separator(struct eng_item* item);
ENGINE_API void eng_item_set_action(struct eng_item* item, unsigned long table, int id);
ENGINE_API void eng_item_set_submenu(struct eng_item* item, struct eng_menu* menu);
ENGINE_API int eng_register_menu(struct eng_menu* menu, unsigned long flags);
ENGINE_API int eng_register_menu_context(int id, const char* name);  // 0: known already
ENGINE_API struct eng_menu* eng_main_menu(void);
ENGINE_API void eng_update_menu_bar(void);

// --- toolbar ---
ENGINE_API void eng_set_macro_button_states(int force);
ENGINE_API struct eng_button* eng_toolbar_button(int id);  // null: not there; to be released
ENGINE_API struct eng_button* eng_button_of(HWND window);  // to be released
ENGINE_API void eng_release_button(struct eng_button* button);
ENGINE_API int eng_button_is_enabled(struct eng_button* button);
ENGINE_API int eng_button_is_checked(struct eng_button* button);
ENGINE_API int eng_button_flyout(struct eng_button* button);
ENGINE_API void eng_button_set_flyout(struct eng_button* button, int entry, int notify);

// --- MAXScript ---
ENGINE_API int eng_execute_script(const char* text);
ENGINE_API void eng_register_primitive(const char* name, void* function);
// A script error out of a primitive: unwinds to the evaluator, does not come back.
ENGINE_API void eng_script_error(const char* message);
ENGINE_API int eng_listener_put(const char* text);  // collected until the flush; 0: failed
ENGINE_API void eng_listener_flush(void);
