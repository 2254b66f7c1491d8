#include "tests/walks/walks.h"

int main(int count, char** arguments) {
    return walks_main(count, arguments);
}
