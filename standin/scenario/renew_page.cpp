// usage: renew_scenario_page docs/scenarios.md
// Makes the tables of the page anew.
#include <fstream>
#include <iostream>
#include <sstream>

#include "standin/scenario/reference.h"

int main(int count, char** arguments) {
    std::ifstream file(count == 2 ? arguments[1] : "");
    std::stringstream page;
    page << file.rdbuf();
    if (!file) {
        std::cerr << "usage: renew_scenario_page docs/scenarios.md\n";
        return 2;
    }
    std::ofstream(arguments[1]) << scenario::Renewed(page.str());
    return 0;
}
