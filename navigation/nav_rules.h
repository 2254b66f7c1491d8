// Which gesture a pressed or released button starts, turns into another or ends. The rules are
// data, read from the top; free of Win32, so that they can be tested anywhere and in full.
#pragma once

#include <span>

#include "settings/plugin_settings.h"

// What runs, as bits.
enum NavState : unsigned {
    kNavNone = 0,
    kNavOrbit = 1,
    kNavZoom = 2,
    kNavPan = 4,
    kNavLocked = 8,
    kNavCtrlSelection = 16,
    kNavMiddleClickMode = 32,  // the host's command mode that wants a middle click
};

// Buttons, with the values of the mouse messages' own flags.
enum HeldButton : unsigned {
    kHeldNone = 0,
    kHeldLeft = 1,
    kHeldRight = 2,
    kHeldMiddle = 16,
};

enum class NavAction {
    kMiddleClick,
    kStartOrbit,
    kStartPan,
    kStartZoom,
    kOrbitToZoom,
    kPanToZoom,
    kZoomToPan,
    kZoomToOrbit,
    kEndOrbit,
    kEndPan,
    kEndZoom,
    kSwallow,
    kLeaveLocked,  // back to idle, or on to a zoom when the right button is still held
};

struct NavRule {
    unsigned when;                 // one of these runs (kNavNone: whatever runs)
    unsigned unless;               // none of these runs
    unsigned held;                 // all of these buttons are held already
    int PluginSettings::* option;  // this setting is on (kAlways: no setting)
    unsigned button;               // the message is about one of these buttons
    NavAction action;
};

inline constexpr int PluginSettings::* kAlways = nullptr;

// Alt is down and a button is pressed. A rule that applies adds its button to the held ones.
extern const std::span<const NavRule> kPressRules;

// A button is released. A rule that applies takes its button from the held ones; when its gesture
// does not want the message after all, the rules below it are tried.
extern const std::span<const NavRule> kReleaseRules;

// The first rule that applies, searched from `first` on; null when none does.
const NavRule* FindRule(std::span<const NavRule> rules, const NavRule* first, unsigned state,
                        unsigned held, unsigned button, const PluginSettings& settings);
