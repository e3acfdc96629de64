// The plain functions from which function objects are made, and the scaling helpers of links and
// colour scales. All are computed in double, for any argument, and touch no state.
#pragma once

#include "core/Realtime.h"

namespace Lathe::Math::FunctionsLibrary {

double Identity(double x) LATHE_REALTIME;
double Negate(double x) LATHE_REALTIME;
// A truth value differs from 0, so NaN is true.
double Not(double x) LATHE_REALTIME;
double Abs(double x) LATHE_REALTIME;
double Square(double x) LATHE_REALTIME;
// 0 for all that is not above 0, NaN included.
double SquareRoot(double x) LATHE_REALTIME;
double Exp(double x) LATHE_REALTIME;
// The natural logarithm; minus infinity at 0.
double Log(double x) LATHE_REALTIME;
// Between a linear gain and decibels: 20 log10(x) and 10^(0.05 x).
double TodB(double x) LATHE_REALTIME;
double FromdB(double x) LATHE_REALTIME;
double Cos(double x) LATHE_REALTIME;
double Sin(double x) LATHE_REALTIME;
double Tan(double x) LATHE_REALTIME;
double Cosh(double x) LATHE_REALTIME;
double Sinh(double x) LATHE_REALTIME;
double Tanh(double x) LATHE_REALTIME;
double Floor(double x) LATHE_REALTIME;
double Ceil(double x) LATHE_REALTIME;
// Half away from zero, in the range of a 32-bit integer: beyond it the nearest end, 0 for NaN.
double Round(double x) LATHE_REALTIME;

// Curves from 0..1 onto 0..1, each NormExp the inverse of its NormLog. With k = 1, 10, 100, 1000:
// NormLog is ln(k x + 1) / ln(k + 1), NormExp is (exp(x ln(k + 1)) - 1) / k.
double NormLog(double x) LATHE_REALTIME;
double NormExp(double x) LATHE_REALTIME;
double NormLog1(double x) LATHE_REALTIME;
double NormExp1(double x) LATHE_REALTIME;
double NormLog2(double x) LATHE_REALTIME;
double NormExp2(double x) LATHE_REALTIME;
double NormLog3(double x) LATHE_REALTIME;
double NormExp3(double x) LATHE_REALTIME;

double X(double x, double y) LATHE_REALTIME;
double Y(double x, double y) LATHE_REALTIME;
double Sum(double x, double y) LATHE_REALTIME;
double Difference(double x, double y) LATHE_REALTIME;
double Product(double x, double y) LATHE_REALTIME;
// By the rules of IEEE: infinite or NaN for y = 0.
double Division(double x, double y) LATHE_REALTIME;
double Average(double x, double y) LATHE_REALTIME;
// Both give x on a tie.
double Max(double x, double y) LATHE_REALTIME;
double Min(double x, double y) LATHE_REALTIME;
double Power(double x, double y) LATHE_REALTIME;
// The modulus of x + iy, sqrt(x x + y y).
double Module(double x, double y) LATHE_REALTIME;
// The remainder of the arguments truncated to 32-bit integers, with the sign of x; 0 when the
// divisor truncates to 0. Truncation saturates, and makes NaN 0.
double Modulo(double x, double y) LATHE_REALTIME;
double Distance(double x, double y) LATHE_REALTIME;

// 1 or 0, by exact comparison.
double Equality(double x, double y) LATHE_REALTIME;
double NotEqual(double x, double y) LATHE_REALTIME;
double LowerThan(double x, double y) LATHE_REALTIME;
double LowerThanEqual(double x, double y) LATHE_REALTIME;
double GreaterThan(double x, double y) LATHE_REALTIME;
double GreaterThanEqual(double x, double y) LATHE_REALTIME;
// 1 or 0, of truth values as in Not.
double And(double x, double y) LATHE_REALTIME;
double Or(double x, double y) LATHE_REALTIME;

// From min..max to 0..1; value - min where the range is empty.
double Normalize(double value, double min, double max) LATHE_REALTIME;
// From 0..1 to min..max.
double Denormalize(double value, double min, double max) LATHE_REALTIME;

} // namespace Lathe::Math::FunctionsLibrary
