#include "cairn-host/FormulaPlot.h"

#include "cairn-host/Canvas.h"
#include "cairn-host/PlotAxis.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>

namespace CairnHost {
namespace {

// All lengths are in pixels.
constexpr double s_Width = 1200.0;
constexpr double s_Height = 700.0;
constexpr SBox s_CurveBox = {110.0, 92.0, s_Width - 36.0, s_Height - 74.0};
constexpr SBox s_SurfaceBox = {110.0, 92.0, s_Width - 190.0, s_Height - 74.0};
constexpr SBox s_ScaleBox = {s_Width - 150.0, 92.0, s_Width - 122.0, s_Height - 74.0};
constexpr int s_MostColumns = 10;
constexpr int s_MostRows = 8;
// Of the range of the values, above and below a curve.
constexpr double s_Room = 0.05;
constexpr SInk s_CurveInk = {0.05, 0.36, 0.66};

// Grows lighter all the way, so that it also reads without its colours.
constexpr std::array<SInk, 5> s_Scale = {{{0.267, 0.005, 0.329},
                                          {0.229, 0.322, 0.546},
                                          {0.128, 0.567, 0.551},
                                          {0.369, 0.789, 0.383},
                                          {0.993, 0.906, 0.144}}};

// The place from 0 to 1 on the scale; NaN is off it.
SInk GetScaleInk(double place) {
    if (!(place >= 0.0 && place <= 1.0))
        return s_MajorLine;
    const double at = place * static_cast<double>(s_Scale.size() - 1);
    const auto below = std::min(static_cast<std::size_t>(at), s_Scale.size() - 2);
    const double f = at - static_cast<double>(below);
    const SInk& a = s_Scale[below];
    const SInk& b = s_Scale[below + 1];
    return {a.m_Red + f * (b.m_Red - a.m_Red), a.m_Green + f * (b.m_Green - a.m_Green),
            a.m_Blue + f * (b.m_Blue - a.m_Blue)};
}

std::uint32_t ToPixel(const SInk& ink) {
    const auto part = [](double value) {
        return static_cast<std::uint32_t>(std::lround(value * 255.0));
    };
    return part(ink.m_Red) << 16 | part(ink.m_Green) << 8 | part(ink.m_Blue);
}

double Place(double value, const SValueRange& range) {
    return (value - range.m_Min) / (range.m_Max - range.m_Min);
}

void DrawColumns(CCanvas& canvas, const SBox& box, const SSweep& x) {
    cairo_set_line_width(canvas.GetCairo(), 1.0);
    canvas.SetFont(s_LabelSize);
    for (const STick& tick : GetLinearTicks(x.m_From, x.m_To, s_MostColumns)) {
        const double at = box.m_Left + Place(tick.m_Value, {x.m_From, x.m_To}) * box.GetWidth();
        canvas.SetInk(s_MajorLine);
        canvas.DrawVerticalLine(at, box);
        canvas.SetInk(s_Text);
        canvas.DrawText(at, box.m_Bottom + 24.0, tick.m_Label, EAlign::Middle);
    }
    canvas.SetInk(s_QuietText);
    canvas.DrawText(box.m_Right, box.m_Bottom + 52.0, x.m_Name, EAlign::End);
}

// Labels stand to the left of the box, or to the right of it.
void DrawRows(CCanvas& canvas, const SBox& box, const SValueRange& range, EAlign side) {
    cairo_set_line_width(canvas.GetCairo(), 1.0);
    canvas.SetFont(s_LabelSize);
    for (const STick& tick : GetLinearTicks(range.m_Min, range.m_Max, s_MostRows)) {
        const double at = box.m_Bottom - Place(tick.m_Value, range) * box.GetHeight();
        canvas.SetInk(std::abs(tick.m_Value) > 0.0 ? s_MajorLine : s_ZeroLine);
        canvas.DrawHorizontalLine(at, box);
        canvas.SetInk(s_Text);
        canvas.DrawText(side == EAlign::Start ? box.m_Left - 12.0 : box.m_Right + 10.0,
                        at + s_LabelSize * 0.35, tick.m_Label,
                        side == EAlign::Start ? EAlign::End : EAlign::Start);
    }
}

void DrawLine(CCanvas& canvas, const SBox& box, const SValueRange& range,
              const std::vector<double>& values) {
    cairo_t* cairo = canvas.GetCairo();
    cairo_save(cairo);
    cairo_rectangle(cairo, box.m_Left, box.m_Top, box.GetWidth(), box.GetHeight());
    cairo_clip(cairo);
    cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_width(cairo, 2.6);
    canvas.SetInk(s_CurveInk);
    const double step = box.GetWidth() / static_cast<double>(values.size() - 1);
    bool drawing = false;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!std::isfinite(values[i])) {
            drawing = false;
            continue;
        }
        const double x = box.m_Left + step * static_cast<double>(i);
        // Cairo's coordinates end at some thousands of pixels.
        const double place = std::clamp(Place(values[i], range), -1.0, 2.0);
        const double y = box.m_Bottom - place * box.GetHeight();
        if (drawing)
            cairo_line_to(cairo, x, y);
        else
            cairo_move_to(cairo, x, y);
        drawing = true;
    }
    cairo_stroke(cairo);
    cairo_restore(cairo);
}

struct SDestroySurface {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using CImage = std::unique_ptr<cairo_surface_t, SDestroySurface>;

// A pixel for each value, the last row on top.
CImage MakeImage(int columns, int rows, const std::vector<double>& values,
                 const SValueRange& range) {
    CImage image(cairo_image_surface_create(CAIRO_FORMAT_RGB24, columns, rows));
    if (cairo_surface_status(image.get()) != CAIRO_STATUS_SUCCESS)
        return image;
    unsigned char* data = cairo_image_surface_get_data(image.get());
    const int stride = cairo_image_surface_get_stride(image.get());
    for (int row = 0; row < rows; ++row) {
        // Cairo aligns the rows of this format to pixels.
        auto* pixels = reinterpret_cast<std::uint32_t*>(data + stride * (rows - 1 - row));
        for (int column = 0; column < columns; ++column) {
            const auto index = static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                               static_cast<std::size_t>(column);
            pixels[column] = ToPixel(GetScaleInk(Place(values[index], range)));
        }
    }
    cairo_surface_mark_dirty(image.get());
    return image;
}

// Each value covers a half step around its place, so the outermost ones are cut in half.
void DrawImage(CCanvas& canvas, const SBox& box, cairo_surface_t* image, int columns, int rows) {
    cairo_t* cairo = canvas.GetCairo();
    cairo_save(cairo);
    cairo_rectangle(cairo, box.m_Left, box.m_Top, box.GetWidth(), box.GetHeight());
    cairo_clip(cairo);
    cairo_translate(cairo, box.m_Left, box.m_Top);
    cairo_scale(cairo, box.GetWidth() / (columns - 1), box.GetHeight() / (rows - 1));
    cairo_set_source_surface(cairo, image, -0.5, -0.5);
    cairo_pattern_set_filter(cairo_get_source(cairo), CAIRO_FILTER_NEAREST);
    cairo_paint(cairo);
    cairo_restore(cairo);
}

void DrawScale(CCanvas& canvas, const SValueRange& range) {
    const int rows = 256;
    std::vector<double> values;
    for (int row = 0; row < rows; ++row)
        values.insert(values.end(), 2, static_cast<double>(row) / (rows - 1));
    const CImage image = MakeImage(2, rows, values, {0.0, 1.0});
    DrawImage(canvas, s_ScaleBox, image.get(), 2, rows);
    DrawRows(canvas, s_ScaleBox, range, EAlign::End);
    canvas.DrawFrame(s_ScaleBox);
}

} // namespace

double SSweep::GetValue(int step) const {
    return step == m_Steps ? m_To : m_From + (m_To - m_From) * step / m_Steps;
}

CStatus DrawFormulaCurve(const SFormulaPicture& picture, const SSweep& x,
                         const std::vector<double>& values, const std::string& path) {
    SValueRange range = FindValueRange(values);
    const double room = (range.m_Max - range.m_Min) * s_Room;
    range = {range.m_Min - room, range.m_Max + room};
    return DrawPicture(path, s_Width, s_Height, [&](CCanvas& canvas) {
        canvas.FillPaper();
        DrawColumns(canvas, s_CurveBox, x);
        DrawRows(canvas, s_CurveBox, range, EAlign::Start);
        DrawLine(canvas, s_CurveBox, range, values);
        canvas.DrawFrame(s_CurveBox);
        canvas.DrawTitles(s_CurveBox, picture.m_Title, picture.m_Subtitle);
    });
}

CStatus DrawFormulaSurface(const SFormulaPicture& picture, const SSweep& x, const SSweep& y,
                           const std::vector<double>& values, const std::string& path) {
    const SValueRange range = FindValueRange(values);
    const CImage image = MakeImage(x.m_Steps + 1, y.m_Steps + 1, values, range);
    return DrawPicture(path, s_Width, s_Height, [&](CCanvas& canvas) {
        canvas.FillPaper();
        DrawColumns(canvas, s_SurfaceBox, x);
        DrawRows(canvas, s_SurfaceBox, {y.m_From, y.m_To}, EAlign::Start);
        DrawImage(canvas, s_SurfaceBox, image.get(), x.m_Steps + 1, y.m_Steps + 1);
        canvas.DrawFrame(s_SurfaceBox);
        DrawScale(canvas, range);
        canvas.DrawTitles(s_SurfaceBox, picture.m_Title, picture.m_Subtitle);
        canvas.SetInk(s_QuietText);
        canvas.DrawUprightText(34.0, s_SurfaceBox.m_Top + s_SurfaceBox.GetHeight() / 2.0, y.m_Name);
    });
}

} // namespace CairnHost
