#include "core/text/NumberText.h"

#include <locale>
#include <sstream>

namespace Lathe::Core {

namespace {

template <class T>
std::string Write(T value, int precision) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream.precision(precision);
    stream << value;
    return stream.str();
}

template <class T>
bool Read(const char* text, T& value) {
    if (!text)
        return false;
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    stream >> value;
    return !stream.fail();
}

} // namespace

std::string NumberToText(double value, int precision) {
    return Write(value, precision);
}

std::string NumberToText(float value, int precision) {
    return Write(value, precision);
}

std::string NumberToText(int value) {
    return Write(value, 0);
}

std::string NumberToText(bool value) {
    return Write(value, 0);
}

bool TextToNumber(const char* text, double& value) {
    return Read(text, value);
}

bool TextToNumber(const char* text, float& value) {
    return Read(text, value);
}

bool TextToNumber(const char* text, int& value) {
    return Read(text, value);
}

bool TextToNumber(const char* text, bool& value) {
    return Read(text, value);
}

} // namespace Lathe::Core
