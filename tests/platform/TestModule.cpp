// A module to be loaded, which knows an address of its own.
extern "C" __attribute__((visibility("default"))) const void* GetOwnAddress() {
    static const char s_Here = 0;
    return &s_Here;
}
