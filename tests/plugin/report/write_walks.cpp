// usage: write_walks FOLDER COUNT COMMANDS
// Walks of fixed seeds that are recorded while they are walked.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "tests/walks/walk.h"

int main(int count, char** arguments) {
    if (count != 4) return 2;
    walk::Kind kind;
    kind.recorded = true;
    for (int i = 0; i < std::atoi(arguments[2]); ++i) {
        kind.release = i % 5 == 2 ? 12900 : 13900;
        auto lines = walk::Make(static_cast<uint64_t>(i) + 1, std::atoi(arguments[3]), kind);
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(walk::HeadOf(lines)),
                     "script \"kvr_record true\"");
        lines.push_back("script \"kvr_record false\"");
        char name[32];
        std::snprintf(name, sizeof name, "/walk_%02d.scn", i);
        std::ofstream file(arguments[1] + std::string(name), std::ios::binary);
        file << "# A walk\n" << walk::Text(lines);
        if (!file.flush()) return 1;
    }
    return 0;
}
