#include "standin/engine/calls.h"

namespace calls {

std::string Text(const char* text) {
    if (!text) return "none";
    return IS_INTRESOURCE(text) ? Text(LOWORD(reinterpret_cast<ULONG_PTR>(text)))
                                : trace::Quoted(text);
}
std::string Text(POINT point) {
    return Text(point.x) + "," + Text(point.y);
}
std::string Text(HWND window) {
    return world::Of(window);
}
std::string Text(const eng_view* view) {
    return view ? view->name : "none";
}
std::string Text(const eng_node* node) {
    return node ? node->name : "none";
}
std::string Text(const eng_mode* mode) {
    return world::ModeText(mode);
}
std::string Text(const eng_menu* menu) {
    return menu ? trace::Quoted(menu->title) : "none";
}
std::string Text(const eng_button* button) {
    return button ? button->name : "none";
}
std::string Text(const eng_table* table) {
    return table ? "found" : "none";
}
std::string Text(const eng_action* action) {
    return action ? "found" : "none";
}

std::string Word(const std::string& text) {
    return text.empty() ? text : ' ' + text;
}

}  // namespace calls
