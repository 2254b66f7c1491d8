// The program's commands. They live in the engine, so that any process can play; standin.exe only
// hands its arguments over. What a worker calls is told by mailbox.h.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "standin/engine/engine_api.h"
#include "standin/player/mailbox.h"
#include "standin/player/player.h"

ENGINE_API int standin_main(int count, char** arguments);
ENGINE_API worker::Outcome standin_play(int count, char** arguments, HANDLE ready);
ENGINE_API bool standin_clear();

// For a program of its own that has the player in it.
namespace player {

// The same commands.
int Main(int count, char** arguments);
// A play as a worker begins it, with somebody who looks on.
worker::Outcome PlayInWorker(int count, char** arguments, HANDLE ready, Observer* observer);

// How the play of a text ended.
struct Played {
    int status = 0;
    std::string messages;
    std::string output;
};
// Plays scenarios that the program makes itself, in workers, which are processes of this program,
// and some side by side. The order of the answers is that of the texts.
using PlayTexts = std::function<std::vector<Played>(const std::vector<std::string>& texts)>;
// Reads the options of a play from the arguments, and says what is wrong with them in one line.
int WithPlays(int count, char** arguments,
              const std::function<int(input::Kind input, const PlayTexts& play)>& run);

}  // namespace player
