// The cost of a change, of a translation and of a port; CommandLine.h lists the arguments.
#include "bench/translator_bench/CommandLine.h"
#include "bench/translator_bench/Product.h"
#include "bench/translator_bench/idiomatic/Idiomatic.h"

int main(int argc, char ** argv) {
    return Bench::run<Bench::Product, Bench::Idiomatic>(argc, argv, "idiomatic/");
}
