#include "tests/walks/chords.h"

#include <initializer_list>

namespace chords {
namespace {

constexpr unsigned kLeftMiddle = kHeldLeft | kHeldMiddle;
constexpr unsigned kLeftRight = kHeldLeft | kHeldRight;
constexpr unsigned kMiddleRight = kHeldMiddle | kHeldRight;

struct Case {
    bool is_so;
    Meaning meaning;
};

Meaning First(int behind, std::initializer_list<Case> cases) {
    for (const auto& [is_so, meaning] : cases)
        if (is_so && meaning.row > behind) return meaning;
    return {};
}

}  // namespace

Meaning Press(const Situation& now, unsigned button) {
    if (now.click_mode) return {1, NavAction::kMiddleClick};
    const bool right_drags = now.right_zoom && now.right;
    switch (button) {
        case kHeldLeft:
            if (now.pan) return {2, NavAction::kPanToZoom};
            if (now.zoom && right_drags) return {7, NavAction::kZoomToOrbit, kHeldRight};
            // The replay of a Ctrl click comes with Alt down, too.
            if (now.left_orbit && !now.ctrl_click) return {9, NavAction::kStartOrbit};
            return {};
        case kHeldRight:
            if (!now.right_zoom) return {};
            if (now.pan) return {3, NavAction::kPanToZoom};
            if (now.orbit || now.refused) return {5, NavAction::kOrbitToZoom};
            if (!now.zoom) return {8, NavAction::kStartZoom};
            return {};
        default:
            if (now.left && (now.orbit || now.refused))
                return {4, NavAction::kOrbitToZoom, kHeldLeft};
            if (now.zoom && right_drags) return {6, NavAction::kZoomToPan, kHeldRight};
            return {10, NavAction::kStartPan};
    }
}

// A gesture goes over into what the buttons that stay down stand for: left for orbit, middle for
// pan, right for zoom, and left and middle, too.
Meaning Release(const Situation& now, unsigned button, int behind) {
    const bool right_drags = now.right_zoom && now.right;
    const bool left_and_middle_zoom = now.zoom && now.left && now.middle;
    const bool right_zooms = now.zoom && right_drags;
    switch (button) {
        case kHeldLeft:
            return First(behind,
                         {
                             {now.orbit && right_drags, {1, NavAction::kOrbitToZoom, kHeldRight}},
                             {left_and_middle_zoom, {5, NavAction::kZoomToPan, kLeftMiddle}},
                             {now.orbit || now.refused, {10, NavAction::kEndOrbit}},
                             {right_zooms, {11, NavAction::kSwallow, kHeldRight}},
                             {now.refused, {13, NavAction::kLeaveLocked}},
                         });
        case kHeldRight:
            if (!now.right_zoom) return {};
            return First(
                behind,
                {
                    {right_zooms && now.left, {4, NavAction::kZoomToOrbit, kLeftRight}},
                    {right_zooms && now.middle, {6, NavAction::kZoomToPan, kMiddleRight}},
                    {right_zooms, {7, NavAction::kEndZoom, kHeldRight}},
                    {now.refused && now.right && !now.zoom, {8, NavAction::kEndZoom, kHeldRight}},
                    {now.orbit || now.pan || now.refused, {12, NavAction::kSwallow}},
                });
        default:
            return First(behind,
                         {
                             {now.pan && right_drags, {2, NavAction::kPanToZoom, kHeldRight}},
                             {left_and_middle_zoom, {3, NavAction::kZoomToOrbit, kLeftMiddle}},
                             {now.pan || now.refused, {9, NavAction::kEndPan}},
                             {right_zooms, {11, NavAction::kSwallow, kHeldRight}},
                         });
    }
}

}  // namespace chords
