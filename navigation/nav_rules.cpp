#include "navigation/nav_rules.h"

namespace {

constexpr auto kRightZoom = &PluginSettings::altRightZoom;
constexpr auto kLeftOrbit = &PluginSettings::altLeftArcRotate;
constexpr unsigned kAnyButton = kHeldLeft | kHeldRight | kHeldMiddle;
constexpr unsigned kLeftOrMiddle = kHeldLeft | kHeldMiddle;
constexpr unsigned kOrbitOrLocked = kNavOrbit | kNavLocked;
constexpr unsigned kPanOrLocked = kNavPan | kNavLocked;
constexpr unsigned kPanOrbitOrLocked = kNavPan | kNavOrbit | kNavLocked;

// clang-format off
constexpr NavRule kPress[] = {
//   when                 unless             held         option      button       action
    {kNavMiddleClickMode, kNavNone,          kHeldNone,   kAlways,    kAnyButton,  NavAction::kMiddleClick},
    {kNavPan,             kNavNone,          kHeldNone,   kAlways,    kHeldLeft,   NavAction::kPanToZoom},
    {kNavPan,             kNavNone,          kHeldNone,   kRightZoom, kHeldRight,  NavAction::kPanToZoom},
    {kOrbitOrLocked,      kNavNone,          kHeldLeft,   kAlways,    kHeldMiddle, NavAction::kOrbitToZoom},
    {kOrbitOrLocked,      kNavNone,          kHeldNone,   kRightZoom, kHeldRight,  NavAction::kOrbitToZoom},
    {kNavZoom,            kNavNone,          kHeldRight,  kRightZoom, kHeldMiddle, NavAction::kZoomToPan},
    {kNavZoom,            kNavNone,          kHeldRight,  kRightZoom, kHeldLeft,   NavAction::kZoomToOrbit},
    {kNavNone,            kNavZoom,          kHeldNone,   kRightZoom, kHeldRight,  NavAction::kStartZoom},
    {kNavNone,            kNavCtrlSelection, kHeldNone,   kLeftOrbit, kHeldLeft,   NavAction::kStartOrbit},
    {kNavNone,            kNavNone,          kHeldNone,   kAlways,    kHeldMiddle, NavAction::kStartPan},
};

constexpr NavRule kRelease[] = {
//   when               unless    held                     option      button         action
    {kNavOrbit,         kNavNone, kHeldRight,              kRightZoom, kHeldLeft,     NavAction::kOrbitToZoom},
    {kNavPan,           kNavNone, kHeldRight,              kRightZoom, kHeldMiddle,   NavAction::kPanToZoom},
    {kNavZoom,          kNavNone, kHeldLeft|kHeldMiddle,   kAlways,    kHeldMiddle,   NavAction::kZoomToOrbit},
    {kNavZoom,          kNavNone, kHeldLeft|kHeldRight,    kRightZoom, kHeldRight,    NavAction::kZoomToOrbit},
    {kNavZoom,          kNavNone, kHeldMiddle|kHeldLeft,   kAlways,    kHeldLeft,     NavAction::kZoomToPan},
    {kNavZoom,          kNavNone, kHeldMiddle|kHeldRight,  kRightZoom, kHeldRight,    NavAction::kZoomToPan},
    {kNavZoom,          kNavNone, kHeldRight,              kRightZoom, kHeldRight,    NavAction::kEndZoom},
    {kNavLocked,        kNavZoom, kHeldRight,              kRightZoom, kHeldRight,    NavAction::kEndZoom},
    {kPanOrLocked,      kNavNone, kHeldNone,               kAlways,    kHeldMiddle,   NavAction::kEndPan},
    {kOrbitOrLocked,    kNavNone, kHeldNone,               kAlways,    kHeldLeft,     NavAction::kEndOrbit},
    {kNavZoom,          kNavNone, kHeldRight,              kRightZoom, kLeftOrMiddle, NavAction::kSwallow},
    {kPanOrbitOrLocked, kNavNone, kHeldNone,               kRightZoom, kHeldRight,    NavAction::kSwallow},
    {kNavLocked,        kNavNone, kHeldNone,               kAlways,    kHeldLeft,     NavAction::kLeaveLocked},
};
// clang-format on

bool Applies(const NavRule& rule, unsigned state, unsigned held, unsigned button,
             const PluginSettings& settings) {
    if ((rule.button & button) == 0) return false;
    if (rule.when != kNavNone && (rule.when & state) == 0) return false;
    if ((rule.unless & state) != 0) return false;
    if ((rule.held & held) != rule.held) return false;
    return rule.option == kAlways || settings.*rule.option != 0;
}

}  // namespace

const std::span<const NavRule> kPressRules = kPress;
const std::span<const NavRule> kReleaseRules = kRelease;

const NavRule* FindRule(std::span<const NavRule> rules, const NavRule* first, unsigned state,
                        unsigned held, unsigned button, const PluginSettings& settings) {
    const NavRule* end = rules.data() + rules.size();
    for (const NavRule* rule = first; rule != end; ++rule) {
        if (Applies(*rule, state, held, button, settings)) return rule;
    }
    return nullptr;
}
