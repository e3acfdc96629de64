// Bytes as the data of an instance's state in a host's session.
#include "FuzzedInstance.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static CairnFuzz::CFuzzedInstance instance;
    instance.SetState({reinterpret_cast<const char*>(data), size});
    instance.Check();
    return 0;
}
