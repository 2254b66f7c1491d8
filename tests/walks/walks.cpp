#include "tests/walks/walks.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "standin/engine/intercept/faults.h"
#include "standin/player/command_line.h"
#include "tests/walks/fuzz.h"
#include "tests/walks/invariants.h"

namespace {

// A number, in the notations that the player's options know.
bool ReadNumber(const char* text, unsigned long long* number) {
    char* end = nullptr;
    *number = std::strtoull(text, &end, 0);
    return text[0] >= '0' && text[0] <= '9' && *end == 0;
}

// Takes the walks' own options from the arguments; the others are those of a play. Empty when they
// are sound, else what is wrong.
std::string TakeOwnOptions(std::vector<char*>* arguments, fuzz::Options* options) {
    unsigned long long length = static_cast<unsigned long long>(options->commands_of_a_walk);
    struct Row {
        const char* name;
        unsigned long long* number;
        unsigned long long lowest, highest;
    };
    const Row rows[] = {{"--seed", &options->seed, 0, ~0ull},
                        {"--events", &options->events, 1, ~0ull},
                        {"--length", &length, 10, 65535}};
    std::vector<char*> others;
    for (size_t i = 0; i < arguments->size(); ++i) {
        char* const argument = (*arguments)[i];
        if (std::strcmp(argument, "--every-row") == 0) {
            options->every_row = true;
            continue;
        }
        const Row* own = nullptr;
        for (const Row& row : rows)
            if (std::strcmp(argument, row.name) == 0) own = &row;
        if (!own) {
            others.push_back(argument);
            continue;
        }
        if (++i == arguments->size()) return std::string("missing a value after ") + argument;
        const char* const value = (*arguments)[i];
        if (!ReadNumber(value, own->number) || *own->number < own->lowest ||
            *own->number > own->highest)
            return std::string("\"") + value + "\" is no value for " + argument;
    }
    options->commands_of_a_walk = static_cast<int>(length);
    *arguments = others;
    return {};
}

}  // namespace

worker::Outcome walks_play(int count, char** arguments, HANDLE ready) {
    invariants::Checker checker;
    return player::PlayInWorker(count, arguments, ready, &checker);
}

int walks_main(int count, char** arguments) {
    if (count > 1 && std::strcmp(arguments[1], "play") == 0) return player::Main(count, arguments);
    std::vector<char*> list(arguments, arguments + count);
    fuzz::Options options;
    if (const std::string problem = TakeOwnOptions(&list, &options); !problem.empty()) {
        std::fprintf(stderr, "walks: %s\n", problem.c_str());
        return player::kUnreadable;
    }
    options.faults = faults::Names();
    // After the start only the host itself takes from its heap, and does not outlive its end.
    std::erase(options.faults, "MAX_new");
    return player::WithPlays(static_cast<int>(list.size()), list.data(),
                             [&options](input::Kind input, const player::PlayTexts& play) {
                                 options.real = input == input::Kind::kReal;
                                 return fuzz::Run(options, play);
                             });
}
