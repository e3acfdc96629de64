// A file through the equaliser into a file, in memory that doesn't grow with the file.
#pragma once

#include "cairn-host/Progress.h"
#include "cairn-host/Result.h"

#include <string>
#include <vector>

namespace CairnHost {

// As given on the command line.
struct SRenderOptions {
    std::string m_Input;
    std::string m_Output;
    // "NAME=VALUE", in force from the first frame.
    std::vector<std::string> m_Settings;
    // A path, or empty for none.
    std::string m_Automation;
    // Sizes separated by commas, taken in turn, again and again.
    std::string m_BlockSizes = "512";
    // Silence to render behind the end of the input.
    double m_TailSeconds = 0.0;
    // Empty for the best that the output's format holds.
    std::string m_Subtype;
};

struct SRenderReport {
    // What the user should know though nothing failed; each is one line.
    std::vector<std::string> m_Notes;
};

TResult<std::vector<int>> ReadBlockSizes(std::string_view text);

TResult<SRenderReport> Render(const SRenderOptions& options, CProgress& progress);

} // namespace CairnHost
