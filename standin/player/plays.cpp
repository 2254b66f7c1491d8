#include "standin/player/plays.h"

#include <cstdio>

#include "standin/player/screen_size.h"

namespace plays {
namespace {

std::vector<std::string> ArgumentsOf(const player::Options& options) {
    std::vector<std::string> list;
    const auto add = [&list](const char* name, const std::string& value) {
        if (value.empty()) return;
        list.emplace_back(name);
        list.push_back(value);
    };
    add("--input", options.input == input::Kind::kReal ? "real" : "virtual");
    add("--release", std::to_string(options.release));
    add("--screen",
        std::to_string(options.screen_width) + "x" + std::to_string(options.screen_height));
    add("--host-dir", options.files.host_dir);
    add("--plugin", options.files.plugin);
    add("--map", options.files.map);
    add("--companion", options.files.companion);
    add("--shots", options.shots);
    add("--transcript", options.transcript);
    add("--config-dir", options.config_dir);
    add("--world", options.world);
    if (options.forgiving) list.emplace_back("--forgiving");
    if (options.queries) list.emplace_back("--queries");
    if (options.facts) list.emplace_back("--facts");
    if (options.film) list.emplace_back("--film");
    return list;
}

}  // namespace

Team::Team(size_t workers) {
    for (size_t i = 0; i < workers; ++i)
        slots_.push_back(std::make_unique<Slot>());
}

// What is begun again gets a desktop and a process that nobody has used.
bool Team::Start(const player::Options& options, size_t number, bool again, std::string* message) {
    Slot& slot = *slots_[number];
    const int width = slot.play.screen_width ? slot.play.screen_width : options.screen_width;
    const int height = slot.play.screen_height ? slot.play.screen_height : options.screen_height;
    const bool real = options.input == input::Kind::kReal;
    // Plays with pictures have a display, whose driver keeps what a process saw of mouse and keys.
    const bool fresh = again || (real && !options.shots.empty());
    // A process asks for the size of the screen once.
    if (fresh || width != slot.width || height != slot.height) slot.worker.End();
    slot.width = width;
    slot.height = height;
    const screen_size::Claim claim(width, height);
    // The size of a desktop stays; so does what real input has left there, when a play has died.
    const bool usual = !fresh && width == options.screen_width && height == options.screen_height;
    const std::string& desktop = real    ? pool_.Real(number, usual && slot.worker.Lasts())
                                 : usual ? pool_.Shared(number)
                                         : pool_.Real(number, false);
    if (desktop.empty()) {
        *message = "no desktop can be made, end other programs and try again";
        return false;
    }
    std::vector<std::string> list = ArgumentsOf(options);
    list.insert(list.end(), {"--desktop", desktop, slot.play.file});
    return slot.worker.Start(list, message);
}

// A play that the system has disturbed is begun again.
child::Result Team::Finish(const player::Options& options, size_t number) {
    constexpr DWORD kLongestPlay = 10 * 60 * 1000;
    constexpr int kTries = 3;
    for (int left = kTries;; --left) {
        child::Result result = slots_[number]->worker.Finish(kLongestPlay);
        if (result.status != player::kDisturbed) return result;
        if (left == 1) {
            result.status = player::kDied;
            return result;
        }
        std::fprintf(stderr, "%sthe play is begun again\n", result.messages.c_str());
        std::string message;
        if (!Start(options, number, true, &message)) {
            result.status = player::kDied;
            result.messages = "standin: " + message + "\n";
            return result;
        }
    }
}

bool Team::Run(const player::Options& options, size_t count, const Next& next, const Done& done,
               std::string* message) {
    size_t begun = 0;
    for (size_t i = 0; i < count; ++i) {
        for (; begun < count && begun < i + slots_.size(); ++begun) {
            slots_[begun % slots_.size()]->play = next(begun);
            if (!Start(options, begun % slots_.size(), false, message)) return false;
        }
        if (!done(i, Finish(options, i % slots_.size()))) break;
    }
    return true;
}

child::Result Team::RunOne(const player::Options& options, const Play& play) {
    child::Result result;
    const bool begun = Run(
        options, 1, [&play](size_t) { return play; },
        [&result](size_t, const child::Result& one) {
            result = one;
            return true;
        },
        &result.messages);
    if (!begun) result.status = player::kDied;
    return result;
}

}  // namespace plays
