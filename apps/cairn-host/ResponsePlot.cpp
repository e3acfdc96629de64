#include "cairn-host/ResponsePlot.h"

#include "cairn-host/Canvas.h"
#include "cairn-host/PlotAxis.h"
#include "cairn-host/Text.h"

#include <algorithm>
#include <cmath>

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

constexpr SInk s_MinorLine = {0.93, 0.94, 0.955};
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

class CPainter {
public:
    CPainter(CCanvas& canvas, const SPlot& plot)
        : m_Canvas(canvas), m_Cairo(canvas.GetCairo()), m_Plot(plot) {
        int rows = 0;
        std::vector<const std::vector<double>*> curves;
        for (const SPlotSeries& series : plot.m_Series) {
            rows = std::max(rows, series.m_LegendRow + 1);
            curves.push_back(&series.m_Values);
        }
        m_Axis = FitDecibelAxis(curves);
        m_Box = {s_Left, s_Top, s_Width - s_Right,
                 s_Height - s_BottomMargin - s_LegendRowHeight * rows - s_UnderAxis};
        m_From = plot.m_Frequencies.front();
        m_To = plot.m_Frequencies.back();
    }

    void Paint() {
        m_Canvas.FillPaper();
        PaintGrid();
        PaintCurves();
        m_Canvas.DrawFrame(m_Box);
        PaintTexts();
        PaintLegend();
    }

private:
    double ToX(double frequency) const {
        return s_Left + std::log(frequency / m_From) / std::log(m_To / m_From) * (m_Box.GetWidth());
    }
    double ToY(double level) const {
        return m_Box.m_Bottom -
               (level - m_Axis.m_Min) / (m_Axis.m_Max - m_Axis.m_Min) * (m_Box.GetHeight());
    }

    void SetPen(const SPlotSeries& series) {
        const SPen pen = GetPen(series.m_Style);
        m_Canvas.SetInk({series.m_Colour[0], series.m_Colour[1], series.m_Colour[2], pen.m_Alpha});
        cairo_set_line_width(m_Cairo, pen.m_Width);
        cairo_set_dash(m_Cairo, pen.m_Dashes.data(), static_cast<int>(pen.m_Dashes.size()), 0.0);
    }
    void PaintGrid() {
        const double reach = std::clamp(m_Plot.m_Nyquist, m_From, m_To);
        if (reach < m_To) {
            m_Canvas.SetInk(s_OutOfReach);
            cairo_rectangle(m_Cairo, ToX(reach), s_Top, s_Width - s_Right - ToX(reach),
                            m_Box.GetHeight());
            cairo_fill(m_Cairo);
        }
        cairo_set_line_width(m_Cairo, 1.0);
        m_Canvas.SetFont(s_LabelSize);
        double labelEnd = 0.0;
        for (const STick& tick : GetFrequencyTicks(m_From, m_To)) {
            const double x = ToX(tick.m_Value);
            m_Canvas.SetInk(tick.m_Label.empty() ? s_MinorLine : s_MajorLine);
            m_Canvas.DrawVerticalLine(x, m_Box);
            const double width = m_Canvas.GetTextWidth(tick.m_Label);
            if (tick.m_Label.empty() || x - width / 2.0 < labelEnd)
                continue;
            m_Canvas.SetInk(s_Text);
            m_Canvas.DrawText(x, m_Box.m_Bottom + 24.0, tick.m_Label, EAlign::Middle);
            labelEnd = x + width / 2.0 + 8.0;
        }
        const int steps =
            static_cast<int>(std::lround((m_Axis.m_Max - m_Axis.m_Min) / m_Axis.m_Step));
        for (int i = 0; i <= steps; ++i) {
            const double level = m_Axis.m_Min + i * m_Axis.m_Step;
            const bool zero = std::abs(level) < m_Axis.m_Step / 2.0;
            m_Canvas.SetInk(zero ? s_ZeroLine : s_MajorLine);
            m_Canvas.DrawHorizontalLine(ToY(level), m_Box);
            m_Canvas.SetInk(s_Text);
            m_Canvas.DrawText(s_Left - 12.0, ToY(level) + s_LabelSize * 0.35,
                              zero ? "0"
                                   : (level > 0.0 ? "+" : "\u2212") + FormatNumber(std::abs(level)),
                              EAlign::End);
        }
    }

    void PaintCurves() {
        cairo_save(m_Cairo);
        cairo_rectangle(m_Cairo, s_Left, s_Top, m_Box.GetWidth(), m_Box.GetHeight());
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
        m_Canvas.DrawTitles(m_Box, m_Plot.m_Title, m_Plot.m_Subtitle);
        m_Canvas.DrawText(s_Width - s_Right, m_Box.m_Bottom + 50.0, "Frequency (Hz)", EAlign::End);
        if (m_Plot.m_Nyquist < m_To) {
            const std::string text =
                "no signal above " + FormatNumber(m_Plot.m_Nyquist / 1000.0) + " kHz";
            // Where the mark is too narrow for its text, the text ends at the frame.
            const double x = std::max(ToX(std::max(m_Plot.m_Nyquist, m_From)), s_Left) + 10.0;
            m_Canvas.DrawText(std::min(x, s_Width - s_Right - 10.0 - m_Canvas.GetTextWidth(text)),
                              s_Top + 24.0, text, EAlign::Start);
        }
        m_Canvas.DrawUprightText(26.0, (m_Box.m_Top + m_Box.m_Bottom) / 2.0, "Gain (dB)");
    }

    // Rows of samples with their names; columns are as wide as their widest name.
    void PaintLegend() {
        m_Canvas.SetFont(s_LabelSize);
        std::vector<double> columns;
        std::vector<std::size_t> filled;
        const auto nextColumn = [&filled](int row) {
            filled.resize(std::max(filled.size(), static_cast<std::size_t>(row) + 1));
            return filled[static_cast<std::size_t>(row)]++;
        };
        for (const SPlotSeries& series : m_Plot.m_Series) {
            const std::size_t column = nextColumn(series.m_LegendRow);
            columns.resize(std::max(columns.size(), column + 1));
            columns[column] = std::max(columns[column], m_Canvas.GetTextWidth(series.m_Name));
        }
        filled.clear();
        for (const SPlotSeries& series : m_Plot.m_Series) {
            double x = s_Left;
            const std::size_t column = nextColumn(series.m_LegendRow);
            for (std::size_t i = 0; i < column; ++i)
                x += s_LegendSample + s_LegendGap + columns[i] + 3.0 * s_LegendGap;
            const double y =
                m_Box.m_Bottom + s_UnderAxis + s_LegendRowHeight * (series.m_LegendRow + 0.5);
            SetPen(series);
            cairo_move_to(m_Cairo, x, y);
            cairo_line_to(m_Cairo, x + s_LegendSample, y);
            cairo_stroke(m_Cairo);
            m_Canvas.SetInk(s_Text);
            m_Canvas.DrawText(x + s_LegendSample + s_LegendGap, y + s_LabelSize * 0.35,
                              series.m_Name, EAlign::Start);
        }
        cairo_set_dash(m_Cairo, nullptr, 0, 0.0);
    }

    CCanvas& m_Canvas;
    cairo_t* m_Cairo;
    const SPlot& m_Plot;
    SDecibelAxis m_Axis = {};
    SBox m_Box = {};
    double m_From = 0.0;
    double m_To = 0.0;
};

} // namespace

CStatus DrawPlot(const SPlot& plot, const std::string& path) {
    return DrawPicture(path, s_Width, s_Height,
                       [&plot](CCanvas& canvas) { CPainter(canvas, plot).Paint(); });
}

} // namespace CairnHost
