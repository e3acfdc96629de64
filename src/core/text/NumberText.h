// Numbers as text and back, the same under every locale of the process.
//
// Both ways have the semantics of a standard stream in the classic locale.
#pragma once

#include <string>

namespace Lathe::Core {

// The precisions with which a value of each type comes back unchanged.
inline constexpr int DoubleTextPrecision = 20;
inline constexpr int FloatTextPrecision = 11;

// Doubles and floats in the default float format; an infinity or NaN gives a word, which doesn't
// read back.
std::string NumberToText(double value, int precision = DoubleTextPrecision);
std::string NumberToText(float value, int precision = FloatTextPrecision);
std::string NumberToText(int value);
// "0" or "1".
std::string NumberToText(bool value);

// Takes the number at the beginning of the text, after blanks, and returns whether there is one
// within the range of the type. If not, the value is what a stream leaves: the old one for a text
// that is null or blank, 0 for other text, the nearest limit for a number out of range, and for a
// bool true for any number but 0.
bool TextToNumber(const char* text, double& value);
bool TextToNumber(const char* text, float& value);
bool TextToNumber(const char* text, int& value);
bool TextToNumber(const char* text, bool& value);

} // namespace Lathe::Core
