#include "autocli/driver/Driver.h"

int main(int argc, char** argv) { return autocli::Main(argc, argv); }
