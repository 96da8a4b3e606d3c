#include "autocli/program/Program.h"

int main(int argc, char** argv) { return autocli::Main(argc, argv); }
