#include "tools/cli/CommandLine.h"

int main(int argc, char ** argv) { return TopologyTools::commandLine(argc, argv); }
