// An instance that takes one damaged state after the other, linked into the fuzzer with all that it
// is made of.
#pragma once

#include <cstdint>
#include <string>

struct RTASProcess;

namespace CairnFuzz {

class CFuzzedInstance {
public:
    // It finds no files of the user's.
    CFuzzedInstance();
    ~CFuzzedInstance();
    CFuzzedInstance(const CFuzzedInstance&) = delete;
    CFuzzedInstance& operator=(const CFuzzedInstance&) = delete;

    // As data of the chunk that holds the whole state.
    void SetState(const std::string& data);
    // Without what the fuzzer's own process can't do: the file is there.
    void LoadPreset(const std::string& path);
    // Ends the process unless audio stays finite and the state that is saved now comes back as it
    // is.
    void Check();

private:
    std::string GetState() const;

    RTASProcess* m_Process = nullptr;
};

} // namespace CairnFuzz
