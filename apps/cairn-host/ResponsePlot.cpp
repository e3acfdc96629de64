#include "cairn-host/ResponsePlot.h"

#include "cairn-host/OutputFile.h"
#include "cairn-host/PlotAxis.h"
#include "cairn-host/Text.h"

#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>

namespace CairnHost {
namespace {

// All lengths are in pixels.
constexpr double s_Width = 1200.0;
constexpr double s_Height = 700.0;
constexpr double s_Left = 84.0;
constexpr double s_Right = 36.0;
constexpr double s_Top = 92.0;
constexpr double s_UnderAxis = 74.0;
constexpr double s_LegendRowHeight = 28.0;
constexpr double s_LegendSample = 46.0;
constexpr double s_LegendGap = 10.0;
constexpr double s_BottomMargin = 14.0;
constexpr double s_LabelSize = 16.0;
constexpr double s_TitleSize = 24.0;
constexpr const char* s_Font = "sans-serif";

struct SInk {
    double m_Red, m_Green, m_Blue, m_Alpha = 1.0;
};
constexpr SInk s_Paper = {1.0, 1.0, 1.0};
constexpr SInk s_Text = {0.13, 0.14, 0.16};
constexpr SInk s_QuietText = {0.34, 0.36, 0.40};
constexpr SInk s_Frame = {0.45, 0.47, 0.51};
constexpr SInk s_MajorLine = {0.82, 0.84, 0.87};
constexpr SInk s_MinorLine = {0.93, 0.94, 0.955};
constexpr SInk s_ZeroLine = {0.50, 0.52, 0.56};
constexpr SInk s_OutOfReach = {0.945, 0.945, 0.95};

struct SPen {
    double m_Width;
    double m_Alpha;
    std::vector<double> m_Dashes;
};

bool IsStrong(ELineStyle style) {
    return style == ELineStyle::Strong || style == ELineStyle::StrongDashed;
}

SPen GetPen(ELineStyle style) {
    switch (style) {
    case ELineStyle::Strong:
        return {3.4, 1.0, {}};
    case ELineStyle::StrongDashed:
        return {3.4, 1.0, {14.0, 14.0}};
    case ELineStyle::Dashed:
        return {1.9, 0.85, {10.0, 5.0}};
    case ELineStyle::Dotted:
        return {1.9, 0.85, {2.0, 4.0}};
    case ELineStyle::DashDotted:
        break;
    }
    return {1.9, 0.85, {12.0, 4.0, 2.0, 4.0}};
}

enum class EAlign : int { Start, Middle, End };

class CPainter {
public:
    CPainter(cairo_t* cairo, const SPlot& plot) : m_Cairo(cairo), m_Plot(plot) {
        int rows = 0;
        std::vector<const std::vector<double>*> curves;
        for (const SPlotSeries& series : plot.m_Series) {
            rows = std::max(rows, series.m_LegendRow + 1);
            curves.push_back(&series.m_Values);
        }
        m_Axis = FitDecibelAxis(curves);
        m_Bottom = s_Height - s_BottomMargin - s_LegendRowHeight * rows - s_UnderAxis;
        m_From = plot.m_Frequencies.front();
        m_To = plot.m_Frequencies.back();
    }

    void Paint() {
        SetInk(s_Paper);
        cairo_paint(m_Cairo);
        PaintGrid();
        PaintCurves();
        SetInk(s_Frame);
        cairo_set_line_width(m_Cairo, 1.0);
        cairo_rectangle(m_Cairo, s_Left + 0.5, s_Top + 0.5, s_Width - s_Right - s_Left - 1.0,
                        m_Bottom - s_Top - 1.0);
        cairo_stroke(m_Cairo);
        PaintTexts();
        PaintLegend();
    }

private:
    double ToX(double frequency) const {
        return s_Left + std::log(frequency / m_From) / std::log(m_To / m_From) *
                            (s_Width - s_Right - s_Left);
    }
    double ToY(double level) const {
        return m_Bottom -
               (level - m_Axis.m_Min) / (m_Axis.m_Max - m_Axis.m_Min) * (m_Bottom - s_Top);
    }

    void SetInk(const SInk& ink) {
        cairo_set_source_rgba(m_Cairo, ink.m_Red, ink.m_Green, ink.m_Blue, ink.m_Alpha);
    }
    void SetPen(const SPlotSeries& series) {
        const SPen pen = GetPen(series.m_Style);
        SetInk({series.m_Colour[0], series.m_Colour[1], series.m_Colour[2], pen.m_Alpha});
        cairo_set_line_width(m_Cairo, pen.m_Width);
        cairo_set_dash(m_Cairo, pen.m_Dashes.data(), static_cast<int>(pen.m_Dashes.size()), 0.0);
    }
    void SetFont(double size, bool bold = false) {
        cairo_select_font_face(m_Cairo, s_Font, CAIRO_FONT_SLANT_NORMAL,
                               bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
        cairo_set_font_size(m_Cairo, size);
    }
    double GetWidth(const std::string& text) {
        cairo_text_extents_t extents;
        cairo_text_extents(m_Cairo, text.c_str(), &extents);
        return extents.x_advance;
    }
    // The y is that of the base line.
    void Text(double x, double y, const std::string& text, EAlign align) {
        if (align != EAlign::Start)
            x -= GetWidth(text) * (align == EAlign::Middle ? 0.5 : 1.0);
        cairo_move_to(m_Cairo, x, y);
        cairo_show_text(m_Cairo, text.c_str());
    }
    // Hairlines stand on half pixels, so that they stay sharp.
    void VerticalLine(double x) {
        cairo_move_to(m_Cairo, std::floor(x) + 0.5, s_Top);
        cairo_line_to(m_Cairo, std::floor(x) + 0.5, m_Bottom);
        cairo_stroke(m_Cairo);
    }
    void HorizontalLine(double y) {
        cairo_move_to(m_Cairo, s_Left, std::floor(y) + 0.5);
        cairo_line_to(m_Cairo, s_Width - s_Right, std::floor(y) + 0.5);
        cairo_stroke(m_Cairo);
    }

    void PaintGrid() {
        const double reach = std::clamp(m_Plot.m_Nyquist, m_From, m_To);
        if (reach < m_To) {
            SetInk(s_OutOfReach);
            cairo_rectangle(m_Cairo, ToX(reach), s_Top, s_Width - s_Right - ToX(reach),
                            m_Bottom - s_Top);
            cairo_fill(m_Cairo);
        }
        cairo_set_line_width(m_Cairo, 1.0);
        SetFont(s_LabelSize);
        double labelEnd = 0.0;
        for (const STick& tick : GetFrequencyTicks(m_From, m_To)) {
            const double x = ToX(tick.m_Frequency);
            SetInk(tick.m_Label.empty() ? s_MinorLine : s_MajorLine);
            VerticalLine(x);
            const double width = GetWidth(tick.m_Label);
            if (tick.m_Label.empty() || x - width / 2.0 < labelEnd)
                continue;
            SetInk(s_Text);
            Text(x, m_Bottom + 24.0, tick.m_Label, EAlign::Middle);
            labelEnd = x + width / 2.0 + 8.0;
        }
        const int steps =
            static_cast<int>(std::lround((m_Axis.m_Max - m_Axis.m_Min) / m_Axis.m_Step));
        for (int i = 0; i <= steps; ++i) {
            const double level = m_Axis.m_Min + i * m_Axis.m_Step;
            const bool zero = std::abs(level) < m_Axis.m_Step / 2.0;
            SetInk(zero ? s_ZeroLine : s_MajorLine);
            HorizontalLine(ToY(level));
            SetInk(s_Text);
            Text(s_Left - 12.0, ToY(level) + s_LabelSize * 0.35,
                 zero ? "0" : (level > 0.0 ? "+" : "\u2212") + FormatNumber(std::abs(level)),
                 EAlign::End);
        }
    }

    void PaintCurves() {
        cairo_save(m_Cairo);
        cairo_rectangle(m_Cairo, s_Left, s_Top, s_Width - s_Right - s_Left, m_Bottom - s_Top);
        cairo_clip(m_Cairo);
        cairo_set_line_join(m_Cairo, CAIRO_LINE_JOIN_ROUND);
        // The strong lines lie on top.
        for (const bool strong : {false, true}) {
            for (const SPlotSeries& series : m_Plot.m_Series) {
                if (IsStrong(series.m_Style) == strong)
                    PaintCurve(series);
            }
        }
        cairo_restore(m_Cairo);
    }

    void PaintCurve(const SPlotSeries& series) {
        // Cairo's coordinates end at some thousands of pixels.
        const double reach = m_Axis.m_Max - m_Axis.m_Min;
        bool drawing = false;
        SetPen(series);
        for (std::size_t i = 0; i < series.m_Values.size(); ++i) {
            const double level = series.m_Values[i];
            if (!std::isfinite(level)) {
                drawing = false;
                continue;
            }
            const double x = ToX(m_Plot.m_Frequencies[i]);
            const double y = ToY(std::clamp(level, m_Axis.m_Min - reach, m_Axis.m_Max + reach));
            if (drawing)
                cairo_line_to(m_Cairo, x, y);
            else
                cairo_move_to(m_Cairo, x, y);
            drawing = true;
        }
        cairo_stroke(m_Cairo);
    }

    void PaintTexts() {
        SetInk(s_Text);
        SetFont(s_TitleSize, true);
        Text(s_Left, 44.0, m_Plot.m_Title, EAlign::Start);
        SetInk(s_QuietText);
        SetFont(s_LabelSize);
        Text(s_Left, 72.0, m_Plot.m_Subtitle, EAlign::Start);
        Text(s_Width - s_Right, m_Bottom + 50.0, "Frequency (Hz)", EAlign::End);
        if (m_Plot.m_Nyquist < m_To) {
            const std::string text =
                "no signal above " + FormatNumber(m_Plot.m_Nyquist / 1000.0) + " kHz";
            // Where the mark is too narrow for its text, the text ends at the frame.
            const double x = std::max(ToX(std::max(m_Plot.m_Nyquist, m_From)), s_Left) + 10.0;
            Text(std::min(x, s_Width - s_Right - 10.0 - GetWidth(text)), s_Top + 24.0, text,
                 EAlign::Start);
        }
        cairo_save(m_Cairo);
        cairo_translate(m_Cairo, 26.0, (s_Top + m_Bottom) / 2.0);
        cairo_rotate(m_Cairo, -std::acos(0.0));
        Text(0.0, 0.0, "Gain (dB)", EAlign::Middle);
        cairo_restore(m_Cairo);
    }

    // Rows of samples with their names; columns are as wide as their widest name.
    void PaintLegend() {
        SetFont(s_LabelSize);
        std::vector<double> columns;
        std::vector<std::size_t> filled;
        const auto nextColumn = [&filled](int row) {
            filled.resize(std::max(filled.size(), static_cast<std::size_t>(row) + 1));
            return filled[static_cast<std::size_t>(row)]++;
        };
        for (const SPlotSeries& series : m_Plot.m_Series) {
            const std::size_t column = nextColumn(series.m_LegendRow);
            columns.resize(std::max(columns.size(), column + 1));
            columns[column] = std::max(columns[column], GetWidth(series.m_Name));
        }
        filled.clear();
        for (const SPlotSeries& series : m_Plot.m_Series) {
            double x = s_Left;
            const std::size_t column = nextColumn(series.m_LegendRow);
            for (std::size_t i = 0; i < column; ++i)
                x += s_LegendSample + s_LegendGap + columns[i] + 3.0 * s_LegendGap;
            const double y =
                m_Bottom + s_UnderAxis + s_LegendRowHeight * (series.m_LegendRow + 0.5);
            SetPen(series);
            cairo_move_to(m_Cairo, x, y);
            cairo_line_to(m_Cairo, x + s_LegendSample, y);
            cairo_stroke(m_Cairo);
            SetInk(s_Text);
            Text(x + s_LegendSample + s_LegendGap, y + s_LabelSize * 0.35, series.m_Name,
                 EAlign::Start);
        }
        cairo_set_dash(m_Cairo, nullptr, 0, 0.0);
    }

    cairo_t* m_Cairo;
    const SPlot& m_Plot;
    SDecibelAxis m_Axis = {};
    double m_Bottom = 0.0;
    double m_From = 0.0;
    double m_To = 0.0;
};

cairo_status_t WriteBytes(void* closure, const unsigned char* data, unsigned int size) {
    return static_cast<COutputFile*>(closure)->Write(data, size) ? CAIRO_STATUS_SUCCESS
                                                                 : CAIRO_STATUS_WRITE_ERROR;
}

struct SDestroySurface {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct SDestroyCairo {
    void operator()(cairo_t* cairo) const { cairo_destroy(cairo); }
};

} // namespace

CStatus DrawPlot(const SPlot& plot, const std::string& path) {
    COutputFile output;
    if (CStatus status = output.Open(path); !status)
        return status;
    const bool vector =
        EqualsIgnoringCase(std::filesystem::path(path).extension().string(), ".svg");
    // Declared after the output, which it may write to until it goes.
    const std::unique_ptr<cairo_surface_t, SDestroySurface> surface(
        vector ? cairo_svg_surface_create_for_stream(WriteBytes, &output, s_Width, s_Height)
               : cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(s_Width),
                                            static_cast<int>(s_Height)));
    {
        const std::unique_ptr<cairo_t, SDestroyCairo> cairo(cairo_create(surface.get()));
        CPainter(cairo.get(), plot).Paint();
    }
    cairo_surface_flush(surface.get());
    cairo_status_t status = cairo_surface_status(surface.get());
    if (status == CAIRO_STATUS_SUCCESS && !vector)
        status = cairo_surface_write_to_png_stream(surface.get(), WriteBytes, &output);
    cairo_surface_finish(surface.get());
    if (status == CAIRO_STATUS_SUCCESS)
        status = cairo_surface_status(surface.get());
    if (status != CAIRO_STATUS_SUCCESS && !output.HasFailed())
        return SFault{path + ": can't be drawn: " + cairo_status_to_string(status)};
    return output.Commit();
}

} // namespace CairnHost

#if defined(__SANITIZE_ADDRESS__)
// The font library keeps its patterns to the end of the process, in ways that the leak check can't
// follow.
extern "C" {
__attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}
__attribute__((visibility("default"))) const char* __lsan_default_options() {
    return "print_suppressions=0"; // They would stand among the program's own messages.
}
}
#endif
