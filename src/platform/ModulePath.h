// Where on the disk the running code lies.
#pragma once

#include <string>

namespace Lathe::System {

// The absolute path, its links resolved, of the shared object that holds an address of code or
// data. That of the executable if the address is in the executable or in no file; empty if even
// that file is gone. A shared object that was loaded by a relative path is found as long as the
// current folder is the one of its loading.
std::string GetModulePath(const void* address);

} // namespace Lathe::System
