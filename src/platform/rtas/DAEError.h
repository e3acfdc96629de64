// What the library, or a plug-in in its name, throws where the module starts.
#pragma once

// What the entry points return beside the code of a CDAEError.
inline constexpr int NoGroupError = -7003;
inline constexpr int UnknownExceptionError = -7401;

class CDAEError {
public:
    explicit CDAEError(short code) : m_Code(code) {}
    short GetCode() const { return m_Code; }

private:
    short m_Code;
};
