// A module to be loaded, with an address of its own.
extern "C" __attribute__((visibility("default"))) const char InTestModule = 0;
