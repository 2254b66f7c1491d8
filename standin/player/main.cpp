#include "standin/player/command_line.h"

int main(int count, char** arguments) {
    return standin_main(count, arguments);
}
