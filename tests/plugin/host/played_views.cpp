#include "tests/plugin/host/played_views.h"

#include "host/host.h"

std::map<HWND, HWND> g_views;
std::set<HWND> g_locked_views;
HWND g_active_view = nullptr;
HWND g_main_window = nullptr;
int g_view_questions = 0;

void ForgetPlayedViews() {
    g_views.clear();
    g_locked_views.clear();
    g_active_view = nullptr;
    g_main_window = nullptr;
}

namespace host {

Viewport Viewport::OfWindow(HWND window) {
    ++g_view_questions;
    const auto found = g_views.find(window);
    return Viewport(found == g_views.end() ? nullptr : reinterpret_cast<ViewExp*>(found->second));
}
Viewport Viewport::Active() {
    return Viewport(reinterpret_cast<ViewExp*>(g_active_view));
}
Viewport::~Viewport() {}
HWND Viewport::Window() const {
    return reinterpret_cast<HWND>(view_);
}
bool Viewport::IsLocked() const {
    return g_locked_views.contains(Window());
}
HWND MainWindow() {
    return g_main_window;
}

}  // namespace host
