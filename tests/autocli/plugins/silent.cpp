extern "C" int NotTheEntryPoint() { return 0; }
