// Presses and releases that begin, change and end gestures.
#include "benchmarks/user_actions.h"
#include "benchmarks/situations.h"

namespace situations {
namespace {

using namespace user_actions;

template <int button>
constexpr Situation Begin(const char* id, const char* title, const char* window,
                          Action begin = nullptr, Action end = nullptr,
                          const char* confirmed_by = kGestureOf<button>) {
    return {.id = id,
            .title = title,
            .window = window,
            .begin = begin,
            .prepare = Hold<VK_MENU>,
            .act = Press<button>,
            .finish = Sequence<Drag, ReleaseWithAlt<button>>,
            .end = end,
            .confirmed_by = confirmed_by};
}

template <int button>
constexpr Situation End(const char* id, const char* title, const char* window,
                        Action begin = nullptr, Action end = nullptr,
                        const char* confirmed_by = kGestureOf<button>) {
    return {.id = id,
            .title = title,
            .window = window,
            .begin = begin,
            .prepare = PressWithAlt<button>,
            .act = Release<button>,
            .finish = LetGo<VK_MENU>,
            .end = end,
            .confirmed_by = confirmed_by};
}

// One gesture becomes another by a second button, and comes back without it.
template <int first, int second>
constexpr Situation Join(const char* id, const char* title, const char* to,
                         const char* window = kView) {
    return {.id = id,
            .title = title,
            .window = window,
            .prepare = PressWithAlt<first>,
            .act = Press<second>,
            .finish = Sequence<Drag, Release<second>, ReleaseWithAlt<first>>,
            .confirmed_by = to};
}

template <int first, int second>
constexpr Situation Part(const char* id, const char* title, const char* to,
                         const char* window = kView) {
    return {.id = id,
            .title = title,
            .window = window,
            .prepare = Sequence<PressWithAlt<first>, Press<second>, Drag>,
            .act = Release<second>,
            .finish = ReleaseWithAlt<first>,
            .confirmed_by = to};
}

constexpr int kLeft = VK_LBUTTON;
constexpr int kMiddle = VK_MBUTTON;
constexpr int kRight = VK_RBUTTON;

constexpr Situation kChords[] = {
    Begin<kLeft>("orbit_press", "press that begins an orbit", kView),
    End<kLeft>("orbit_release", "release that ends an orbit", kView),
    Begin<kMiddle>("pan_press", "press that begins a pan", kView),
    End<kMiddle>("pan_release", "release that ends a pan", kView),
    Begin<kRight>("zoom_press", "press that begins a zoom", kView),
    End<kRight>("zoom_release", "release that ends a zoom", kView),
    {.id = "orbit_release_alt_first",
     .title = "release that ends an orbit, Alt is up already",
     .window = kView,
     .prepare = Sequence<PressWithAlt<kLeft>, LetGo<VK_MENU>>,
     .act = Release<kLeft>,
     .confirmed_by = kOrbiting},
    Begin<kLeft>("refused_press", "press of a refused orbit", kView, LockView, UnlockView,
                 "g_navLocked"),
    End<kLeft>("refused_release", "release of a refused orbit", kView, LockView, UnlockView,
               "g_navLocked"),
    Begin<kMiddle>("alt_press_foreign", "press with Alt over a foreign window", kForeign, nullptr,
                   nullptr, nullptr),
    Join<kLeft, kMiddle>("orbit_to_zoom", "orbit becomes zoom", kZooming),
    Part<kLeft, kMiddle>("zoom_to_orbit", "zoom becomes orbit again", kOrbiting),
    Join<kLeft, kRight>("orbit_to_right_zoom", "orbit becomes zoom by the right button", kZooming),
    Join<kMiddle, kLeft>("pan_to_zoom", "pan becomes zoom", kZooming),
    Part<kMiddle, kLeft>("zoom_to_pan", "zoom becomes pan again", kPanning),
    Join<kRight, kMiddle>("right_zoom_to_pan", "zoom becomes pan", kPanning),
    Part<kRight, kMiddle>("pan_to_right_zoom", "pan becomes zoom again", kZooming),
    Join<kRight, kLeft>("right_zoom_to_orbit", "zoom becomes orbit", kOrbiting),
    Begin<kMiddle>("pan_press_unwrap", "press of a pan, Unwrap editor", "unwrap"),
    End<kMiddle>("pan_release_unwrap", "release of a pan, Unwrap editor", "unwrap"),
    Begin<kRight>("zoom_press_unwrap", "press of a zoom, Unwrap editor", "unwrap"),
    End<kRight>("zoom_release_unwrap", "release of a zoom, Unwrap editor", "unwrap"),
    Begin<kMiddle>("pan_press_trackview", "press of a pan, Track View", "trackview"),
    End<kMiddle>("pan_release_trackview", "release of a pan, Track View", "trackview"),
    Begin<kRight>("zoom_press_trackview", "press of a zoom, Track View", "trackview"),
    End<kRight>("zoom_release_trackview", "release of a zoom, Track View", "trackview"),
    Begin<kMiddle>("pan_press_schematic", "press of a pan, Schematic View", "schematic"),
    End<kRight>("zoom_release_schematic", "release of a zoom, Schematic View", "schematic"),
    Join<kMiddle, kLeft>("pan_to_zoom_unwrap", "pan becomes zoom, Unwrap editor", kZooming,
                         "unwrap"),
    Part<kMiddle, kLeft>("zoom_to_pan_unwrap", "zoom becomes pan again, Unwrap editor", kPanning,
                         "unwrap"),
};

}  // namespace

std::span<const Situation> Chords() {
    return kChords;
}

}  // namespace situations
