#include "math/FunctionsLibrary.h"

#include "core/SaturatingCast.h"

#include <cmath>

namespace Lathe::Math::FunctionsLibrary {

namespace {

bool IsTrue(double x) {
    return x != 0.0;
}

double FromBool(bool value) {
    return value ? 1.0 : 0.0;
}

} // namespace

double Identity(double x) LATHE_REALTIME {
    return x;
}
double Negate(double x) LATHE_REALTIME {
    return -x;
}
double Not(double x) LATHE_REALTIME {
    return FromBool(!IsTrue(x));
}
double Abs(double x) LATHE_REALTIME {
    return std::fabs(x);
}
double Square(double x) LATHE_REALTIME {
    return x * x;
}
double SquareRoot(double x) LATHE_REALTIME {
    return x > 0.0 ? std::sqrt(x) : 0.0;
}
double Exp(double x) LATHE_REALTIME {
    return std::exp(x);
}
double Log(double x) LATHE_REALTIME {
    return std::log(x);
}
double TodB(double x) LATHE_REALTIME {
    return 20.0 * std::log10(x);
}
double FromdB(double x) LATHE_REALTIME {
    return std::pow(10.0, 0.05 * x);
}
double Cos(double x) LATHE_REALTIME {
    return std::cos(x);
}
double Sin(double x) LATHE_REALTIME {
    return std::sin(x);
}
double Tan(double x) LATHE_REALTIME {
    return std::tan(x);
}
double Cosh(double x) LATHE_REALTIME {
    return std::cosh(x);
}
double Sinh(double x) LATHE_REALTIME {
    return std::sinh(x);
}
double Tanh(double x) LATHE_REALTIME {
    return std::tanh(x);
}
double Floor(double x) LATHE_REALTIME {
    return std::floor(x);
}
double Ceil(double x) LATHE_REALTIME {
    return std::ceil(x);
}
double Round(double x) LATHE_REALTIME {
    return Core::TruncateToInt(x > 0.0 ? x + 0.5 : x - 0.5);
}

double NormLog(double x) LATHE_REALTIME {
    return std::log(x + 1.0) / std::log(2.0);
}
double NormExp(double x) LATHE_REALTIME {
    return std::exp(x * std::log(2.0)) - 1.0;
}
double NormLog1(double x) LATHE_REALTIME {
    return std::log(10.0 * x + 1.0) / std::log(11.0);
}
double NormExp1(double x) LATHE_REALTIME {
    return (std::exp(x * std::log(11.0)) - 1.0) * 0.1;
}
double NormLog2(double x) LATHE_REALTIME {
    return std::log(100.0 * x + 1.0) / std::log(101.0);
}
double NormExp2(double x) LATHE_REALTIME {
    return (std::exp(x * std::log(101.0)) - 1.0) * 0.01;
}
double NormLog3(double x) LATHE_REALTIME {
    return std::log(1000.0 * x + 1.0) / std::log(1001.0);
}
double NormExp3(double x) LATHE_REALTIME {
    return (std::exp(x * std::log(1001.0)) - 1.0) * 0.001;
}

double X(double x, double) LATHE_REALTIME {
    return x;
}
double Y(double, double y) LATHE_REALTIME {
    return y;
}
double Sum(double x, double y) LATHE_REALTIME {
    return x + y;
}
double Difference(double x, double y) LATHE_REALTIME {
    return x - y;
}
double Product(double x, double y) LATHE_REALTIME {
    return x * y;
}
double Division(double x, double y) LATHE_REALTIME {
    return x / y;
}
double Average(double x, double y) LATHE_REALTIME {
    return (x + y) * 0.5;
}
double Max(double x, double y) LATHE_REALTIME {
    return y > x ? y : x;
}
double Min(double x, double y) LATHE_REALTIME {
    return y < x ? y : x;
}
double Power(double x, double y) LATHE_REALTIME {
    return std::pow(x, y);
}
double Module(double x, double y) LATHE_REALTIME {
    return std::sqrt(x * x + y * y);
}
double Modulo(double x, double y) LATHE_REALTIME {
    const int divisor = Core::TruncateToInt(y);
    // A divisor of -1 leaves no remainder, and would overflow on the smallest integer.
    return divisor == 0 || divisor == -1 ? 0 : Core::TruncateToInt(x) % divisor;
}
double Distance(double x, double y) LATHE_REALTIME {
    return std::fabs(x - y);
}

double Equality(double x, double y) LATHE_REALTIME {
    return FromBool(x == y);
}
double NotEqual(double x, double y) LATHE_REALTIME {
    return FromBool(x != y);
}
double LowerThan(double x, double y) LATHE_REALTIME {
    return FromBool(x < y);
}
double LowerThanEqual(double x, double y) LATHE_REALTIME {
    return FromBool(x <= y);
}
double GreaterThan(double x, double y) LATHE_REALTIME {
    return FromBool(x > y);
}
double GreaterThanEqual(double x, double y) LATHE_REALTIME {
    return FromBool(x >= y);
}
double And(double x, double y) LATHE_REALTIME {
    return FromBool(IsTrue(x) && IsTrue(y));
}
double Or(double x, double y) LATHE_REALTIME {
    return FromBool(IsTrue(x) || IsTrue(y));
}

double Normalize(double value, double min, double max) LATHE_REALTIME {
    return max == min ? value - min : (value - min) / (max - min);
}
double Denormalize(double value, double min, double max) LATHE_REALTIME {
    return value * (max - min) + min;
}

} // namespace Lathe::Math::FunctionsLibrary
