#include "benchmarks/bench.h"

int main(int count, char** arguments) {
    return bench_main(count, arguments);
}
