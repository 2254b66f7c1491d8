#include "benchmarks/situations.h"

#include <string>

#include "benchmarks/stage.h"
#include "standin/engine/world/world.h"

namespace situations {
namespace {

bool IsConfirmed(const Situation& situation) {
    int value = 0;
    return !situation.confirmed_by || (plugin::Read(situation.confirmed_by, &value) && value != 0);
}

}  // namespace

std::vector<Situation> All() {
    std::vector<Situation> all;
    for (const auto& part : {Moves(), Gestures(), Buttons(), Chords(), Commands()})
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

std::vector<Situation> Repeated() {
    std::vector<Situation> repeated = All();
    std::erase_if(repeated, [](const Situation& one) { return one.message == Message::kNone; });
    return repeated;
}

const Situation* Find(std::string_view id) {
    for (const auto& part : {Moves(), Gestures(), Buttons(), Chords(), Commands()})
        for (const Situation& one : part)
            if (one.id == id) return &one;
    return nullptr;
}

void Enter(const Situation& situation) {
    if (!world::Find(situation.window)) world::OpenWindow(situation.window);
    stage::MoveTo(stage::PlaceIn(situation.window));
    if (situation.begin) situation.begin();
}

bool Turn(const Situation& situation, entry_points::Wrapper wrapper) {
    if (situation.prepare) situation.prepare();
    bool confirmed = IsConfirmed(situation);
    entry_points::Watch(wrapper);
    situation.act();
    entry_points::Watch(nullptr);
    confirmed = IsConfirmed(situation) || confirmed;
    if (situation.finish) situation.finish();
    return confirmed;
}

void Leave(const Situation& situation) {
    if (situation.end) situation.end();
    // Only editors and floaters close.
    world::CloseWindow(situation.window);
}

void Send(const Situation& situation, int turn) {
    constexpr int kPlainKey = 'J';
    switch (situation.message) {
        case Message::kNone: return;
        case Message::kMove: stage::MoveBy(turn % 2 ? -1 : 1, 0); return;
        case Message::kKey:
            stage::Key(kPlainKey, true);
            stage::Key(kPlainKey, false);
            return;
        case Message::kModifier:
            stage::Key(VK_CONTROL, true);
            stage::Key(VK_CONTROL, false);
            return;
    }
}

}  // namespace situations
