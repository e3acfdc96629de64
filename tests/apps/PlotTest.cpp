// Pictures of responses and formulas: axes of round numbers that hold the data, and curves that are
// drawn where they have values and nowhere else.
#include "apps/TestFiles.h"
#include "cairn-host/Canvas.h"
#include "cairn-host/FormulaPlot.h"
#include "cairn-host/PlotAxis.h"
#include "cairn-host/Response.h"
#include "cairn-host/ResponsePlot.h"

#include <cairo.h>

#include <cmath>
#include <limits>
#include <memory>

namespace CairnHostTests {
namespace {

using namespace CairnHost;

constexpr double s_Infinity = std::numeric_limits<double>::infinity();

TEST(DecibelAxis, HoldsTheDataInFewRoundSteps) {
    const std::vector<double> cases[] = {
        {0.0},         {-0.5, 0.5},         {6.0, -6.0},     {9.0},
        {12.0, -3.0},  {-40.0, 40.0},       {-160.0, 160.0}, {-7.3},
        {-s_Infinity}, {std::nan(""), 3.0}, {23.9, -0.1},    {1e9},
    };
    for (const std::vector<double>& values : cases) {
        SCOPED_TRACE(values.front());
        const SDecibelAxis axis = FitDecibelAxis({&values});
        EXPECT_LE(axis.m_Min, -6.0);
        EXPECT_GE(axis.m_Max, 6.0);
        const double steps = (axis.m_Max - axis.m_Min) / axis.m_Step;
        EXPECT_GE(steps, 5.0);
        EXPECT_LE(steps, 13.0);
        EXPECT_EQ(axis.m_Min, std::round(axis.m_Min / axis.m_Step) * axis.m_Step);
        EXPECT_EQ(axis.m_Max, std::round(axis.m_Max / axis.m_Step) * axis.m_Step);
        for (const double value : values) {
            if (std::abs(value) < 200.0) {
                EXPECT_LT(axis.m_Min, value) << "on the frame";
                EXPECT_GT(axis.m_Max, value) << "on the frame";
            }
        }
    }
}

TEST(FrequencyTicks, AreRoundAndFewAndNeverNone) {
    const auto labels = [](double from, double to) {
        std::string text;
        for (const STick& tick : GetFrequencyTicks(from, to))
            text += tick.m_Label.empty() ? "" : tick.m_Label + " ";
        return text;
    };
    EXPECT_EQ(labels(20.0, 22000.0), "20 50 100 200 500 1k 2k 5k 10k 20k ");
    EXPECT_EQ(labels(200e3, 2e6), "200k 500k 1M 2M ");
    EXPECT_EQ(labels(300.0, 700.0), "300 400 500 600 700 ");
    EXPECT_EQ(labels(440.0, 480.0), "440 445 450 455 460 465 470 475 480 ");
    EXPECT_EQ(labels(1001.0, 1003.5), "1.001k 1.0015k 1.002k 1.0025k 1.003k 1.0035k ");
    // As narrow and as low as numbers go: few labels, and an end.
    EXPECT_LE(GetFrequencyTicks(std::nextafter(1e9, 0.0), 1e9).size(), 9u);
    EXPECT_LE(GetFrequencyTicks(0.001, std::nextafter(0.001, 1.0)).size(), 9u);
}

TEST(LinearTicks, AreRoundAndFewAndNeverNone) {
    const auto labels = [](double from, double to) {
        std::string text;
        for (const STick& tick : GetLinearTicks(from, to, 5))
            text += tick.m_Label + " ";
        return text;
    };
    EXPECT_EQ(labels(-1.0, 1.0), "-1 -0.5 0 0.5 1 ");
    EXPECT_EQ(labels(-0.3, 0.95), "0 0.5 ");
    EXPECT_EQ(labels(-1e150, 1e150), "-1e+150 -5e+149 0 5e+149 1e+150 ");
}

TEST(ValueRange, HoldsFiniteValuesAndIsNeverEmpty) {
    const std::vector<double> cases[] = {{},
                                         {0.0},
                                         {-3.0, 5.0},
                                         {1e9, 1e9 + 1e-7},
                                         {std::nan(""), s_Infinity},
                                         {-1e300, 1e300, s_Infinity}};
    for (const std::vector<double>& values : cases) {
        const SValueRange range = FindValueRange(values);
        EXPECT_LT(range.m_Min, range.m_Max);
        EXPECT_TRUE(std::isfinite((range.m_Max - range.m_Min) / 1e-3));
        for (const double value : values) {
            if (std::abs(value) < 1e100) {
                EXPECT_LE(range.m_Min, value);
                EXPECT_GE(range.m_Max, value);
            }
        }
    }
    EXPECT_EQ(FindValueRange({0.0, 1e-20}).m_Max, 1e-20) << "small values are no flat line";
}

class Plot : public CFolderTest {
protected:
    using CPicture = std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)>;

    CPicture ReadPicture(const char* name) {
        return {cairo_image_surface_create_from_png(In(name).c_str()), cairo_surface_destroy};
    }
    // The colour at a place, as 0xrrggbb.
    static unsigned GetPixel(const CPicture& picture, int x, int y) {
        const unsigned char* data = cairo_image_surface_get_data(picture.get()) +
                                    y * cairo_image_surface_get_stride(picture.get());
        return reinterpret_cast<const std::uint32_t*>(data)[x] & 0xffffffu;
    }
};

TEST_F(Plot, CurveIsDrawnWhereItHasValues) {
    SPlot plot;
    plot.m_Frequencies = SpaceFrequencies(20.0, 22000.0, 100);
    plot.m_Nyquist = 24000.0;
    plot.m_Series.push_back({"pure red", {1.0, 0.0, 0.0}, ELineStyle::Strong, 0, {}});
    for (std::size_t i = 0; i < 100; ++i)
        plot.m_Series[0].m_Values.push_back(i < 50 ? 3.0 : -s_Infinity);
    ASSERT_TRUE(DrawPlot(plot, In("a.svg")));
    EXPECT_NE(ReadBytes("a.svg").find("<svg"), std::string::npos);
    ASSERT_TRUE(DrawPlot(plot, In("a.png")));
    const CPicture picture = ReadPicture("a.png");
    const int width = cairo_image_surface_get_width(picture.get());
    ASSERT_GT(width, 0);
    // Of the upper half, which holds no legend: where the curve's pure colour is.
    int red = 0, beyond = 0, rows = 0;
    for (int y = 0; y < cairo_image_surface_get_height(picture.get()) / 2; ++y) {
        const int before = red;
        for (int x = 0; x < width; ++x) {
            const bool isRed = GetPixel(picture, x, y) == 0xff0000u;
            red += isRed;
            beyond += isRed && x >= width / 2 + 30;
        }
        rows += red > before;
    }
    EXPECT_GT(red, 500);
    EXPECT_EQ(beyond, 0);
    EXPECT_LE(rows, 4); // A level curve: no line falls to where the values end.
}

TEST_F(Plot, WhatCannotBeDrawnMakesNoFile) {
    for (const char* name : {"a.png", "a.svg"})
        EXPECT_FALSE(DrawPicture(
            In(name), 9, 9, [](CCanvas& canvas) { canvas.DrawText(1, 1, "\xFF", EAlign::Start); }));
    EXPECT_TRUE(List().empty());
}

// Low is dark and high is light, in the right corner, and what has no value is neither.
TEST_F(Plot, SurfaceHasItsValuesInTheirPlaces) {
    const SSweep x = {"x", 0.0, 1.0, 1};
    ASSERT_TRUE(DrawFormulaSurface({"t", "s"}, x, x, {0.0, 0.5, std::nan(""), 1.0}, In("a.png")));
    const CPicture picture = ReadPicture("a.png");
    const int left = 130, right = 990, top = 110, bottom = 600;
    EXPECT_EQ(GetPixel(picture, left, bottom), 0x440154u);
    EXPECT_EQ(GetPixel(picture, right, bottom), 0x21918du);
    EXPECT_EQ(GetPixel(picture, right, top), 0xfde725u);
    EXPECT_EQ(GetPixel(picture, left, top), 0xd1d6deu);
}

} // namespace
} // namespace CairnHostTests
