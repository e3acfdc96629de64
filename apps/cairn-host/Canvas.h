// What all pictures have in common: a sheet with text, hairlines and inks, written as .png or .svg.
#pragma once

#include "cairn-host/Result.h"

#include <cairo.h>

#include <functional>
#include <string>

namespace CairnHost {

// Each from 0 to 1.
struct SInk {
    double m_Red, m_Green, m_Blue, m_Alpha = 1.0;
};
inline constexpr SInk s_Paper = {1.0, 1.0, 1.0};
inline constexpr SInk s_Text = {0.13, 0.14, 0.16};
inline constexpr SInk s_QuietText = {0.34, 0.36, 0.40};
inline constexpr SInk s_Frame = {0.45, 0.47, 0.51};
inline constexpr SInk s_MajorLine = {0.82, 0.84, 0.87};
inline constexpr SInk s_ZeroLine = {0.50, 0.52, 0.56};

// In pixels.
inline constexpr double s_LabelSize = 16.0;
inline constexpr double s_TitleSize = 24.0;

enum class EAlign : int { Start, Middle, End };

// All lengths are in pixels from the upper left corner.
struct SBox {
    double m_Left, m_Top, m_Right, m_Bottom;

    double GetWidth() const { return m_Right - m_Left; }
    double GetHeight() const { return m_Bottom - m_Top; }
};

class CCanvas {
public:
    // The context outlives the canvas.
    explicit CCanvas(cairo_t* cairo) : m_Cairo(cairo) {}

    // For paths, which have no shorter way.
    cairo_t* GetCairo() const { return m_Cairo; }

    void FillPaper();
    void SetInk(const SInk& ink);
    void SetFont(double size, bool bold = false);
    double GetTextWidth(const std::string& text);
    // The y is that of the base line.
    void DrawText(double x, double y, const std::string& text, EAlign align);
    // From bottom to top, around the point.
    void DrawUprightText(double x, double y, const std::string& text);
    // Hairlines stand on half pixels, so that they stay sharp.
    void DrawVerticalLine(double x, const SBox& box);
    void DrawHorizontalLine(double y, const SBox& box);
    void DrawFrame(const SBox& box);
    // A title with a quieter line below it, over the box.
    void DrawTitles(const SBox& box, const std::string& title, const std::string& subtitle);

private:
    cairo_t* m_Cairo;
};

// .svg where the path says so, else .png. No file when any part can't be painted.
CStatus DrawPicture(const std::string& path, double width, double height,
                    const std::function<void(CCanvas&)>& paint);

} // namespace CairnHost
