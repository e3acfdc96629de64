// What the library, or a plug-in in its name, throws where the module starts.
#pragma once

class CDAEError {
public:
    explicit CDAEError(short code) : m_Code(code) {}
    short GetCode() const { return m_Code; }

private:
    short m_Code;
};
